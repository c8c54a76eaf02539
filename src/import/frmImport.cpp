#include "import/frmImport.h"

#include "frame/Frame.h"
#include "import/frmImportRecipe.h"
#include "interaction/ControlCharacters.h"
#include "platform/ApplicationInformation.h"
#include "platform/Directory.h"
#include "platform/Paths.h"
#include "ui_frmImport.h"

#include <QFile>
#include <QItemSelection>

#include <algorithm>
#include <numeric>

using namespace Qt::Literals::StringLiterals;

frmImport::frmImport(Frame &frame, frmImportRecipe &importer)
    : ChildWindow(frame)
    , m_ui(std::make_unique<Ui::frmImport>())
    , m_importer(importer)
{
    m_ui->setupUi(this);
    m_ui->dirRecipes->setModel(&m_directories);
    m_ui->lstRecipes->setModel(&m_files);
    setCancelButton(m_ui->cmdCancel);
    setCloseButton(m_ui->cmdCancel);
    connect(m_ui->drvRecipes, &QComboBox::activated, this, &frmImport::drvRecipes_Change);
    connect(m_ui->dirRecipes, &QAbstractItemView::activated, this, &frmImport::dirRecipes_Open);
    connect(m_ui->lstRecipes->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmImport::lstRecipes_SelectionChange);
    connect(m_ui->cmdSelectAll, &QPushButton::clicked, this, &frmImport::cmdSelectAll_Click);
    connect(m_ui->cmdDeselectAll, &QPushButton::clicked, this, &frmImport::cmdDeselectAll_Click);
    connect(m_ui->cmdImport, &QPushButton::clicked, this, &frmImport::cmdImport_Click);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &frmImport::cmdCancel_Click);
}

frmImport::~frmImport() = default;

void frmImport::Form_Load()
{
    const QString program = platform::programDirectory();
    std::error_code ignored; // without the directory the dialog opens in the program's own one
    std::filesystem::create_directory(
        platform::nativePath(platform::joinPath(program, u"recipes"_s)), ignored);

    m_drives = platform::drives();
    for (const std::filesystem::path &drive : m_drives)
        m_ui->drvRecipes->addItem(escapeControlCharacters(platform::displayPath(drive)));

    const auto start = platform::nativePath(platform::startingDirectory(program, u"recipes"_s));
    setDirectory(platform::canBeOpened(start) ? start : platform::nativePath(program));
}

void frmImport::Form_Activate()
{
    emptyIfVanished();
}

void frmImport::drvRecipes_Change()
{
    const std::filesystem::path &drive =
        m_drives[static_cast<std::size_t>(m_ui->drvRecipes->currentIndex())];
    if (platform::canBeOpened(drive))
        setDirectory(drive);
}

void frmImport::dirRecipes_Open(const QModelIndex &directory)
{
    const std::filesystem::path path = m_directories.path(directory.row());
    if (platform::canBeOpened(path))
        setDirectory(path);
}

// Also selects the drive that the directory is on.
void frmImport::setDirectory(const std::filesystem::path &directory)
{
    const std::size_t drive = platform::driveOf(directory, m_drives);
    m_ui->drvRecipes->setCurrentIndex(static_cast<int>(drive));
    m_directories.open(m_drives[drive], directory);
    m_ui->dirRecipes->setCurrentIndex(m_directories.currentIndex());
    dirRecipes_Change();
}

void frmImport::dirRecipes_Change()
{
    m_files.setNames(platform::filesEndingIn(".srf", m_directories.current()));
    SetAllSelected(true);
    m_ui->lstRecipes->setCurrentIndex(m_files.index(0));
    lstRecipes_SelectionChange(); // not emitted if the list was and is empty
}

void frmImport::SetAllSelected(bool selected)
{
    if (selected)
        m_ui->lstRecipes->selectAll();
    else
        m_ui->lstRecipes->clearSelection();
}

void frmImport::lstRecipes_SelectionChange()
{
    const QItemSelection selection = m_ui->lstRecipes->selectionModel()->selection();
    const int chosen = std::accumulate(
        selection.begin(), selection.end(), 0,
        [](int sum, const QItemSelectionRange &range) { return sum + range.height(); });
    m_ui->lblChosen->setText(
        tr("%1 of %2 chosen")
            .arg(locale().toString(chosen), locale().toString(m_files.rowCount())));
}

void frmImport::cmdSelectAll_Click()
{
    SetAllSelected(true);
}

void frmImport::cmdDeselectAll_Click()
{
    SetAllSelected(false);
}

// Lists the files again if the directory has been deleted or can no longer be read: none are found.
void frmImport::emptyIfVanished()
{
    if (!platform::canBeOpened(m_directories.current()))
        dirRecipes_Change();
}

void frmImport::cmdImport_Click()
{
    emptyIfVanished();
    const std::vector<int> rows = chosenRows();
    if (rows.size() == 1)
        importFiles(rows);
    else
        m_importer.batch([&] { importFiles(rows); });
}

// In the order of the list, not in the order in which they were chosen.
std::vector<int> frmImport::chosenRows() const
{
    std::vector<int> rows;
    for (const QItemSelectionRange &range : m_ui->lstRecipes->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

void frmImport::importFiles(const std::vector<int> &rows)
{
    const std::unique_ptr<Progress> progress = interaction().startProgress(title());
    qsizetype done = 0;
    for (const int row : rows) {
        const QByteArray &name = m_files.name(row);
        if (!progress->update(done++, std::ssize(rows), QFile::decodeName(name)))
            return;
        const auto outcome = m_importer.ImportSRFFile(m_directories.current() / name.toStdString());
        if (outcome == frmImportRecipe::Outcome::Stopped)
            return;
    }
}

void frmImport::cmdCancel_Click()
{
    closeWindow();
}
