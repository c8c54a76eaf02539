#include "import/srf/SrfParser.h"

#include "interaction/ControlCharacters.h"
#include "platform/Utf8.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

// The grammar. A line is the text up to CR LF, CR or the end of the file. A text in double quotes
// is a whole line; any is a line other than the one that follows the braces.
//
//   recipe       = heading instructions ingredients utensils rest-of-the-file
//   heading      = line name author type serves description
//   instructions = { any } "<Instructions>" { any } "</Instructions>"
//   ingredients  = { any } "<Ingredients>" { ingredient | blank } "</Ingredients>"
//   ingredient   = name [ '|' type '|' shelf-life '|' vegetarian ] '||' quantity
//   utensils     = { any } "<Utensils>" { utensil | blank } "</Utensils>"
//   utensil      = name
//   blank        = a line that is empty or all spaces
//
// The first '||' of an ingredient begins its quantity, whatever precedes it: an ingredient that is
// in the catalog needs only its name and quantity.

namespace {

class Parser
{
    Q_DECLARE_TR_FUNCTIONS(SrfParser)

public:
    explicit Parser(const QByteArray &text)
        : m_rest(text.constData(), static_cast<std::size_t>(text.size()))
    {
        constexpr std::size_t usualLines = 16;
        m_recipe.text = text; // the same bytes, of which the recipe has views
        m_recipe.ingredients.reserve(usualLines);
        m_recipe.utensils.reserve(usualLines);
    }

    std::variant<SrfRecipe, SrfError> recipe();

private:
    // Each rule reads its lines and returns whether they were as expected. If not, m_error is set
    // and nothing more is read.
    bool heading();
    bool instructions();
    bool ingredients();
    bool ingredient();
    bool utensils();
    bool utensil();

    bool headingLine(std::string_view &field, const char *expected);
    void addInstruction();
    bool skipTo(std::string_view tag);
    template <typename Rule>
    bool readTo(std::string_view tag, Rule rule);
    bool checkName(std::string_view name, const char *expected);

    bool nextLine();
    bool isBlank() const;
    bool fail(const char *expected);
    bool failAtEnd(const QString &expected);

    SrfRecipe m_recipe;
    std::string_view m_rest;
    std::string_view m_line;
    int m_number = 0; // of m_line, counted from 1
    SrfError m_error = {};
};

std::variant<SrfRecipe, SrfError> Parser::recipe()
{
    if (heading() && instructions() && ingredients() && utensils())
        return std::move(m_recipe);
    return std::move(m_error);
}

bool Parser::heading()
{
    constexpr const char *name = QT_TR_NOOP("the name of the recipe");
    std::string_view anything;
    return headingLine(anything, QT_TR_NOOP("a first line with any text"))
        && headingLine(m_recipe.name, name) && checkName(m_recipe.name, name)
        && headingLine(m_recipe.author, QT_TR_NOOP("the author"))
        && headingLine(m_recipe.type, QT_TR_NOOP("the number of the recipe's type"))
        && headingLine(m_recipe.serves, QT_TR_NOOP("the number of servings"))
        && headingLine(m_recipe.description, QT_TR_NOOP("the description"));
}

bool Parser::headingLine(std::string_view &field, const char *expected)
{
    if (!nextLine())
        return failAtEnd(tr(expected));
    field = m_line;
    return true;
}

bool Parser::instructions()
{
    m_recipe.instructions.reserve(m_rest.size());
    return skipTo("<Instructions>") && readTo("</Instructions>", [this] {
               addInstruction();
               return true;
           });
}

void Parser::addInstruction()
{
    constexpr std::string_view lineEnd = "\r\n";
    if (isBlank())
        m_recipe.instructions.append(lineEnd).append(lineEnd);
    else
        m_recipe.instructions.append(m_line);
    m_recipe.instructions.append(lineEnd);
}

bool Parser::ingredients()
{
    return skipTo("<Ingredients>")
        && readTo("</Ingredients>", [this] { return isBlank() || ingredient(); });
}

bool Parser::ingredient()
{
    const std::size_t nameEnd = m_line.find('|');
    const std::size_t quantityMark = m_line.find("||");
    if (quantityMark == std::string_view::npos)
        return fail(QT_TR_NOOP("an ingredient as name|type|shelf life|vegetarian||quantity, "
                               "or the line \"</Ingredients>\""));
    const std::string_view name = m_line.substr(0, nameEnd);
    if (!checkName(name, QT_TR_NOOP("the name of an ingredient before the first |")))
        return false;
    m_recipe.ingredients.push_back({name, m_line.substr(quantityMark + 2), m_line, m_number});
    return true;
}

bool Parser::utensils()
{
    return skipTo("<Utensils>") && readTo("</Utensils>", [this] { return isBlank() || utensil(); });
}

bool Parser::utensil()
{
    if (!checkName(m_line, QT_TR_NOOP("the name of a utensil, or the line \"</Utensils>\"")))
        return false;
    m_recipe.utensils.push_back({m_line, m_number});
    return true;
}

bool Parser::skipTo(std::string_view tag)
{
    return readTo(tag, [] { return true; });
}

template <typename Rule>
bool Parser::readTo(std::string_view tag, Rule rule)
{
    const int first = m_number + 1;
    while (nextLine()) {
        if (m_line == tag)
            return true;
        if (!rule())
            return false;
    }
    return failAtEnd(
        tr("the line \"%1\" somewhere from line %2 on").arg(platform::decodeUtf8(tag)).arg(first));
}

bool Parser::checkName(std::string_view name, const char *expected)
{
    if (name.empty())
        return fail(expected);
    if (name.find('\0') != std::string_view::npos)
        return fail(QT_TR_NOOP("a name without a null character"));
    return true;
}

// Returns false at the end of the file; m_number is then one more than the number of the last line.
bool Parser::nextLine()
{
    ++m_number;
    if (m_rest.empty())
        return false;
    const std::size_t end = m_rest.find('\r');
    m_line = m_rest.substr(0, end);
    m_rest.remove_prefix(end == std::string_view::npos ? m_rest.size() : end + 1);
    if (end != std::string_view::npos && m_rest.starts_with('\n'))
        m_rest.remove_prefix(1);
    return true;
}

bool Parser::isBlank() const
{
    return m_line.find_first_not_of(' ') == std::string_view::npos;
}

bool Parser::fail(const char *expected)
{
    m_error = {m_number, tr(expected), platform::decodeUtf8(m_line)};
    return false;
}

bool Parser::failAtEnd(const QString &expected)
{
    m_error = {m_number, expected, {}, SrfError::Kind::EndOfFile};
    return false;
}

// In UTF-16 code units, about one line of a message box.
constexpr qsizetype longestFound = 80;

QString foundText(const SrfError &error)
{
    if (error.kind == SrfError::Kind::EndOfFile)
        return Parser::tr("the end of the file");
    if (error.found.isEmpty())
        return Parser::tr("nothing");
    return Parser::tr("\"%1\"").arg(excerpt(error.found, longestFound));
}

// Returns whether more lines end in a line feed alone than in a carriage return.
bool endsLinesInLineFeeds(QByteArrayView text)
{
    const qsizetype ends = text.count('\r');
    const qsizetype lineFeeds = text.count('\n') - text.count("\r\n");
    return lineFeeds > ends;
}

} // namespace

QString srfErrorText(const SrfError &error, const QString &path)
{
    const QString file = escapeControlCharacters(path);
    if (error.kind == SrfError::Kind::LineFeeds)
        return Parser::tr("%1 was not imported.\n\n"
                          "Its lines end in a line feed alone. The lines of a recipe file end in a "
                          "carriage return and a line feed. Save it with Windows line ends (CR LF) "
                          "and import it again.")
            .arg(file);
    return Parser::tr("%1 was not imported.\n\nLine %2: expected %3, found %4.")
        .arg(file, QString::number(error.line), error.expected, foundText(error));
}

std::variant<SrfRecipe, SrfError> parseSrf(const QByteArray &text)
{
    std::variant<SrfRecipe, SrfError> result = Parser(text).recipe();
    // Within a line of a good file, line feeds are part of the text.
    if (std::holds_alternative<SrfError>(result) && endsLinesInLineFeeds(text))
        return SrfError{1, {}, {}, SrfError::Kind::LineFeeds};
    return result;
}

std::variant<SrfNewIngredient, SrfError> newIngredient(const SrfIngredient &ingredient)
{
    SrfNewIngredient fields;
    const struct {
        std::string_view &field;
        const char *expected;
    } rules[] = {
        {fields.type, QT_TRANSLATE_NOOP("SrfParser", "the type of a new ingredient")},
        {fields.shelfLife, QT_TRANSLATE_NOOP("SrfParser", "the shelf life of a new ingredient")},
        {fields.vegetarian,
         QT_TRANSLATE_NOOP("SrfParser", "True or False for a new ingredient as vegetarian")},
    };
    std::size_t start = ingredient.name.size() + 1;
    for (const auto &[field, expected] : rules) {
        const std::size_t end = ingredient.entry.find('|', start);
        if (end == start || end == std::string_view::npos)
            return SrfError{ingredient.line, Parser::tr(expected),
                            platform::decodeUtf8(ingredient.entry)};
        field = ingredient.entry.substr(start, end - start);
        start = end + 1;
    }
    return fields;
}
