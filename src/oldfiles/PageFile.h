#pragma once

#include "oldfiles/Bytes.h"
#include "oldfiles/CodePage.h"

#include <bitset>
#include <filesystem>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace oldfiles {

// Jet 3 and the formats after it differ in the size of their pages and in the width of most counts.
struct Format {
    bool isJet3;
    std::size_t pageSize;
};

enum class PageKind : quint8 { Data = 1, Definition, IndexNode, IndexLeaf, UsageMap };

// The page on which the definition of the catalog begins, in every file.
constexpr quint32 catalogPage = 2;

// Points to a row of a data page. Page 0 is the header, so that 0 points nowhere.
struct RowPointer {
    quint32 page = 0;
    quint8 row = 0;

    RowPointer() = default;
    explicit RowPointer(quint32 stored)
        : page(stored >> 8U)
        , row(static_cast<quint8>(stored))
    {
    }

    bool isNull() const { return page == 0 && row == 0; }
};

// Holds one page until another one is read into it.
class PageBuffer
{
    friend class PageFile;

    std::vector<char> m_bytes;
    std::optional<quint32> m_number;
};

// A data page: rows with a directory of their places.
class DataPage
{
public:
    static constexpr std::size_t mostRows = 256; // which a pointer can tell apart
    static constexpr quint32 usageMapOwner = 0;
    static constexpr quint32 longValueOwner = 0x4C41564C; // "LVAL"

    enum class RowState { Present, Moved, Body, Deleted };

    DataPage() = default; // has no rows
    // Throws Damage if this is no data page or if its directory does not fit.
    DataPage(Bytes page, const Format &format);

    // The page of the definition that the rows belong to, or one of the constants above.
    quint32 owner() const;
    std::size_t rowCount() const { return m_rowCount; }
    // `Body` is a row that has moved here, `Moved` one whose first four bytes point to its body.
    RowState state(std::size_t row) const;
    // Throws Damage if there is no such row or if it does not fit.
    Bytes row(std::size_t row) const;

private:
    std::size_t start(std::size_t row) const;

    Bytes m_page;
    std::size_t m_directory = 0;
    std::size_t m_rowCount = 0;
    std::bitset<mostRows> m_isOverlapped; // rows whose end lies beyond the start of an earlier row
};

// The pages of a file. Reads each one when it is asked for: a mapping of the file would count as
// memory of the program.
class PageFile
{
public:
    // Throws Error if the file cannot be opened, has another format or is encrypted.
    explicit PageFile(const std::filesystem::path &path);
    ~PageFile();

    const Format &format() const { return m_format; }
    quint32 pageCount() const { return m_pageCount; } // counts complete pages

    // The code page of a Jet 3 file; null for the later formats, whose text is Unicode.
    const std::shared_ptr<const CodePage> &codePage() const { return m_codePage; }

    // Returns the page, which `buffer` holds. Throws Damage if it cannot be read.
    Bytes page(quint32 number, PageBuffer &buffer) const;

    // Returns the row that a pointer leads to, which `buffer` holds. Throws Damage unless it is in
    // this state on a page of this owner.
    Bytes row(RowPointer pointer, quint32 owner, DataPage::RowState state,
              PageBuffer &buffer) const;

private:
    Q_DISABLE_COPY_MOVE(PageFile)

    void readHeader();
    void checkEncryption(quint32 key) const;
    bool hasCatalog() const;

    int m_descriptor;
    Format m_format{};
    quint32 m_pageCount = 0;
    std::shared_ptr<const CodePage> m_codePage;
};

// The rows that pointers have led to while a table is read. Each may be reached once: this ends
// loops, and without it a small file could hold a text of any size.
class VisitedRows
{
public:
    // Throws Damage if the row has been visited.
    void visit(RowPointer pointer);

private:
    // The pages are sparse: a file with holes may have millions.
    std::unordered_map<quint32, std::bitset<DataPage::mostRows>> m_pages;
};

} // namespace oldfiles
