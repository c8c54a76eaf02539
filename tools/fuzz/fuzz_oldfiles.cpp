#include "oldfiles/RecipeFile.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sys/mman.h>
#include <unistd.h>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize);

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// A file in memory with a path that can be opened.
class MemoryFile
{
public:
    MemoryFile(const std::uint8_t *data, std::size_t size)
        : m_descriptor(::memfd_create("fuzz", MFD_CLOEXEC))
    {
        require(::write(m_descriptor, data, size) == static_cast<ssize_t>(size));
    }
    ~MemoryFile() { ::close(m_descriptor); }

    std::string path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

private:
    Q_DISABLE_COPY_MOVE(MemoryFile)

    int m_descriptor;
};

bool isUtf8(std::string_view text)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded =
        decoder.decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    return !decoder.hasError() && decoded.size() <= static_cast<qsizetype>(text.size());
}

// Reads all rows of a table. Their texts are no longer than the file allows: each row and each
// piece of a long text is given out once, and a byte of it becomes at most three in UTF-8.
void checkTable(const oldfiles::RecipeFile &file, std::size_t table, std::size_t fileSize)
{
    oldfiles::RowReader rows = file.rows(table);
    std::size_t textSize = 0;
    qint64 count = 0;
    while (rows.next()) {
        ++count;
        for (const oldfiles::Value &value : rows.values()) {
            const auto *const text = std::get_if<std::string_view>(&value);
            require(!text || isUtf8(*text));
            textSize += text ? text->size() : 0;
        }
    }
    const bool hasProblem = rows.unreadableRows() + rows.unreadablePages() > 0;
    require(hasProblem == !rows.firstProblem().isEmpty());
    require(count + rows.unreadableRows() <= static_cast<qint64>(fileSize));
    constexpr std::size_t mostColumnsOfText = 4; // which may share the same bytes of a damaged row
    require(textSize <= 3 * mostColumnsOfText * fileSize);
    require(file.storedRows(table) >= count);
}

// Where a format has most of its pointers, lengths and counts: the beginning of a page.
constexpr std::size_t pageHead = 96;

class PageMutator
{
public:
    PageMutator(std::uint8_t *data, std::size_t size, std::size_t maxSize, unsigned seed)
        : m_data(data)
        , m_size(size)
        , m_maxSize(maxSize)
        , m_random(seed)
    {
    }

    std::size_t mutate()
    {
        constexpr std::size_t versionAt = 0x14;
        m_pageSize = m_size > versionAt && m_data[versionAt] == 0 ? 2048 : 4096;
        if (m_size < 3 * m_pageSize)
            return LLVMFuzzerMutate(m_data, m_size, m_maxSize);
        for (std::size_t left = 1 + below(4); left > 0; --left)
            mutateOnce();
        return m_size;
    }

private:
    std::size_t below(std::size_t limit) { return m_random() % limit; }
    std::size_t pages() const { return m_size / m_pageSize; }

    // Page 0 is hardly worth it.
    std::uint8_t *anyPage()
    {
        const std::size_t number = below(32) == 0 ? 0 : 1 + below(pages() - 1);
        return m_data + number * m_pageSize;
    }

    void mutateOnce()
    {
        std::uint8_t *const page = anyPage();
        switch (below(8)) {
        case 0:
            LLVMFuzzerMutate(page, m_pageSize, m_pageSize);
            break;
        case 1:
            LLVMFuzzerMutate(page, pageHead, pageHead);
            break;
        case 2: // a row pointer
            store(page, below(m_pageSize - 4), below(pages() + 1) << 8U | below(16), 4);
            break;
        case 3:
            store(page, 2 * below(pageHead / 2), below(m_pageSize + 2), 2);
            break;
        case 4:
            store(page, below(m_pageSize), below(256), 1);
            break;
        case 5:
            std::memcpy(page, anyPageBut(page), m_pageSize);
            break;
        case 6: // the state of a row
            page[2 * below(pageHead / 2) + 1] ^= static_cast<std::uint8_t>(0x40U << below(2));
            break;
        default:
            resize();
        }
    }

    std::uint8_t *anyPageBut(const std::uint8_t *page)
    {
        std::uint8_t *const other = m_data + below(pages()) * m_pageSize;
        return other == page ? m_data + m_pageSize * (page == m_data ? 1 : 0) : other;
    }

    static void store(std::uint8_t *page, std::size_t at, std::size_t value, std::size_t size)
    {
        for (std::size_t i = 0; i < size; ++i)
            page[at + i] = static_cast<std::uint8_t>(value >> 8U * i);
    }

    // Rarely: most files that are cut differ little.
    void resize()
    {
        if (below(16) != 0)
            return;
        m_size -= below(m_size - 3 * m_pageSize + 1);
    }

    std::uint8_t *m_data;
    std::size_t m_size;
    std::size_t m_maxSize;
    std::size_t m_pageSize = 0;
    std::minstd_rand m_random;
};

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t maxSize, unsigned seed)
{
    return PageMutator(data, size, maxSize, seed).mutate();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const MemoryFile memory(data, size);
    try {
        const oldfiles::RecipeFile file(memory.path());
        for (std::size_t table = 0; table < file.tableCount(); ++table)
            checkTable(file, table, size);
    } catch (const oldfiles::Error &error) {
        require(error.text().endsWith(u'.') && error.text().size() < 1500);
    }
    return 0;
}
