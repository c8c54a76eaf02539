#include "oldfiles/PageFile.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <numeric>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace oldfiles {
namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(PageFile)
};

constexpr Format jet3{.isJet3 = true, .pageSize = 2048};
constexpr Format jet4{.isJet3 = false, .pageSize = 4096}; // also ACE

// The header is page 0. Its later part is scrambled, always with the same key.
namespace header {
using namespace std::string_view_literals;
constexpr auto signature = "\0\1\0\0Standard "sv; // "Jet DB" or "ACE DB" follows
constexpr std::size_t version = 0x14;
constexpr quint8 latestVersion = 6;
constexpr std::size_t scrambled = 0x18;
constexpr std::size_t scrambledSize = 126;
constexpr std::array<quint8, 4> scrambleKey{0xC7, 0xDA, 0x39, 0x6B};
constexpr std::size_t codePage = 0x3C - scrambled;
constexpr std::size_t encryptionKey = 0x3E - scrambled;
} // namespace header

// RC4, which is its own inverse.
std::vector<char> unscramble(Bytes bytes)
{
    std::array<quint8, 256> state{};
    std::iota(state.begin(), state.end(), quint8(0));
    quint8 j = 0;
    for (std::size_t i = 0; i < state.size(); ++i) {
        j = static_cast<quint8>(j + state[i] + header::scrambleKey[i % header::scrambleKey.size()]);
        std::swap(state[i], state[j]);
    }
    std::vector<char> clear;
    quint8 i = 0;
    j = 0;
    for (const char byte : bytes.span()) {
        j = static_cast<quint8>(j + state[++i]);
        std::swap(state[i], state[j]);
        const quint8 mask = state[static_cast<quint8>(state[i] + state[j])];
        clear.push_back(static_cast<char>(byte ^ mask));
    }
    return clear;
}

int openForReading(const std::filesystem::path &path)
{
    // Without O_NONBLOCK, opening a pipe would wait for a writer.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        throw Error(Text::tr("The file cannot be opened: %1.")
                        .arg(QString::fromStdString(std::generic_category().message(errno))));
    return descriptor;
}

qint64 sizeOf(int descriptor)
{
    struct stat status = {};
    const bool isFile = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    return isFile ? status.st_size : 0;
}

bool readFully(int descriptor, std::span<char> target, off_t position)
{
    while (!target.empty()) {
        const ssize_t count = ::pread(descriptor, target.data(), target.size(), position);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        target = target.subspan(static_cast<std::size_t>(count));
        position += count;
    }
    return true;
}

} // namespace

PageFile::PageFile(const std::filesystem::path &path)
    : m_descriptor(openForReading(path))
{
    try {
        readHeader();
    } catch (...) {
        ::close(m_descriptor);
        throw;
    }
}

PageFile::~PageFile()
{
    ::close(m_descriptor);
}

void PageFile::readHeader()
{
    std::vector<char> page(jet3.pageSize); // the shorter one; the header is in its first 160 bytes
    const bool isComplete = readFully(m_descriptor, page, 0); // keeps the bytes of a short file
    if (!std::string_view(page.data(), page.size()).starts_with(header::signature))
        throw Error(Text::tr("This is not a file in the Access format."));
    if (!isComplete)
        throw Error(Text::tr("The file is damaged: it ends too early."));
    const auto version = Bytes(page).read<quint8>(header::version);
    if (version > header::latestVersion)
        throw Error(Text::tr("The file is in a later version of the Access format (%1), which is "
                             "not known here.")
                        .arg(version));
    m_format = version == 0 ? jet3 : jet4;
    m_pageCount =
        static_cast<quint32>(sizeOf(m_descriptor) / static_cast<qint64>(m_format.pageSize));

    const std::vector<char> clear =
        unscramble(Bytes(page).part(header::scrambled, header::scrambledSize));
    checkEncryption(Bytes(clear).read<quint32>(header::encryptionKey));
    if (m_format.isJet3)
        m_codePage = std::make_shared<const CodePage>(Bytes(clear).read<quint16>(header::codePage));
}

// A password alone is no obstacle: it leaves the pages as they are. So may a key; only what the
// pages look like tells whether they are encrypted.
void PageFile::checkEncryption(quint32 key) const
{
    if (hasCatalog())
        return;
    if (key != 0 && m_pageCount > catalogPage)
        throw Error(Text::tr("The file is encrypted. Its encryption must be removed with the "
                             "program that made the file."));
    throw Error(Text::tr("The file is damaged: page %1, where its list of tables begins, cannot "
                         "be read.")
                    .arg(catalogPage));
}

bool PageFile::hasCatalog() const
{
    PageBuffer buffer;
    try {
        const auto kind = page(catalogPage, buffer).read<quint8>(0);
        return kind == static_cast<quint8>(PageKind::Definition);
    } catch (const Damage &) {
        return false;
    }
}

Bytes PageFile::page(quint32 number, PageBuffer &buffer) const
{
    if (buffer.m_number != number) {
        require(number < m_pageCount);
        buffer.m_number.reset(); // in case it cannot be read
        buffer.m_bytes.resize(m_format.pageSize);
        const off_t position = static_cast<off_t>(number) * static_cast<off_t>(m_format.pageSize);
        require(readFully(m_descriptor, buffer.m_bytes, position));
        buffer.m_number = number;
    }
    return Bytes(buffer.m_bytes);
}

Bytes PageFile::row(RowPointer pointer, quint32 owner, DataPage::RowState state,
                    PageBuffer &buffer) const
{
    const DataPage rows(page(pointer.page, buffer), m_format);
    require(rows.owner() == owner);
    const Bytes row = rows.row(pointer.row);
    require(rows.state(pointer.row) == state);
    return row;
}

DataPage::DataPage(Bytes page, const Format &format)
    : m_page(page)
    , m_directory(format.isJet3 ? 10 : 14) // NOLINT: the size of the page's head
{
    require(page.read<quint8>(0) == static_cast<quint8>(PageKind::Data));
    m_rowCount = page.read<quint16>(m_directory - sizeof(quint16));
    require(m_rowCount <= mostRows && m_directory + m_rowCount * sizeof(quint16) <= page.size());
    std::size_t lowest = page.size(); // of the starts so far
    for (std::size_t row = 0; row + 1 < m_rowCount; ++row) {
        m_isOverlapped[row + 1] = start(row) > lowest;
        lowest = std::min(lowest, start(row));
    }
}

quint32 DataPage::owner() const
{
    constexpr std::size_t ownerAt = 4;
    return m_page.read<quint32>(ownerAt);
}

DataPage::RowState DataPage::state(std::size_t row) const
{
    constexpr std::array states{RowState::Present, RowState::Moved, RowState::Body,
                                RowState::Deleted};
    constexpr unsigned stateBits = 14; // the two bits above the place
    return states[m_page.read<quint16>(m_directory + row * sizeof(quint16)) >> stateBits];
}

std::size_t DataPage::start(std::size_t row) const
{
    constexpr quint16 placeMask = 0x1FFF;
    return m_page.read<quint16>(m_directory + row * sizeof(quint16)) & placeMask;
}

// Rows are laid from the end of the page towards its beginning. A row that overlaps an earlier one
// is damaged.
Bytes DataPage::row(std::size_t row) const
{
    require(row < m_rowCount);
    const std::size_t begin = start(row);
    const std::size_t end = row == 0 ? m_page.size() : start(row - 1);
    require(begin >= m_directory + m_rowCount * sizeof(quint16));
    require(!m_isOverlapped[row]);
    return m_page.between(begin, end);
}

void VisitedRows::visit(RowPointer pointer)
{
    auto &&isVisited = m_pages[pointer.page][pointer.row];
    require(!isVisited);
    isVisited = true;
}

} // namespace oldfiles
