#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

// The values of the fields of a page, or of an entry of one of its lists. The names are those of
// TemplateFields.h, as string literals, and each is set at most once. Texts are UTF-8.
class TemplateData
{
public:
    using List = std::vector<TemplateData>;
    using Value = std::variant<bool, std::string, std::string_view, List>;

    TemplateData() { m_values.reserve(sizeOfEntry); }

    // A page: what is not set here is taken from the common fields, which must outlive the page.
    void setCommon(const TemplateData &common)
    {
        m_common = &common;
        m_values.reserve(sizeOfPage);
    }

    // An empty text is the same as no field: a section can ask whether there is one.
    void setText(std::string_view name, std::string text) { add(name, std::move(text)); }

    // Copies nothing: the text must be valid as long as the data is used.
    void setView(std::string_view name, std::string_view text) { add(name, text); }

    void setFlag(std::string_view name, bool flag) { add(name, flag); }
    void setList(std::string_view name, List entries) { add(name, std::move(entries)); }

    // Sets the fields of another page, which is a list of one entry.
    void setPage(std::string_view name, TemplateData page)
    {
        List list;
        list.push_back(std::move(page));
        setList(name, std::move(list));
    }

    const TemplateData *common() const { return m_common; } // null if there are none
    const std::vector<std::pair<std::string_view, Value>> &values() const { return m_values; }

    // Returns null if the field is not set.
    const Value *find(std::string_view name) const
    {
        for (const auto &[known, value] : m_values) {
            if (known == name)
                return &value;
        }
        return m_common == nullptr ? nullptr : m_common->find(name);
    }

private:
    // Usual numbers of fields.
    static constexpr std::size_t sizeOfEntry = 5;
    static constexpr std::size_t sizeOfPage = 24;

    template <typename Type>
    void add(std::string_view name, Type &&value)
    {
        m_values.emplace_back(name, std::forward<Type>(value));
    }

    std::vector<std::pair<std::string_view, Value>> m_values;
    const TemplateData *m_common = nullptr;
};
