#include "app/frmMain.h"

#include "about/frmAbout.h"
#include "app/StartPage.h"
#include "catalogs/frmIngredient.h"
#include "catalogs/frmUtensil.h"
#include "export/ExportCommand.h"
#include "import/frmImport.h"
#include "import/frmImportRecipe.h"
#include "recipes/frmRecipes.h"
#include "settings/frmSettings.h"
#include "ui_frmMain.h"

#include <QApplication>
#include <QCloseEvent>
#include <QScreen>

namespace {

std::unique_ptr<Ui::frmMain> formOf(frmMain *window)
{
    auto form = std::make_unique<Ui::frmMain>();
    form->setupUi(window);
    return form;
}

} // namespace

frmMain::frmMain(Interaction &interaction)
    : m_ui(formOf(this))
    , m_frame(interaction, *m_ui->mdiArea)
    , m_importRecipe(std::make_unique<frmImportRecipe>(interaction))
{
    m_ui->mdiArea->setPlaceholder(
        new StartPage(*m_ui->mnuRecipes, *m_ui->mnuImport, *m_ui->mnuIngredient, *m_ui->mnuExport));
    resize(size().boundedTo(screen()->availableSize() * 0.9)); // leaves room for the title bar
    const ErrorBoundary &boundary = m_frame.boundary();
    boundary.connect(m_ui->mnuImport, &QAction::triggered, this, &frmMain::mnuImport_Click);
    boundary.connect(m_ui->mnuExport, &QAction::triggered, this, &frmMain::mnuExport_Click);
    boundary.connect(m_ui->mnuSettings, &QAction::triggered, this, &frmMain::mnuSettings_Click);
    boundary.connect(m_ui->mnuExit, &QAction::triggered, this, &frmMain::mnuExit_Click);
    boundary.connect(m_ui->mnuRecipes, &QAction::triggered, this, &frmMain::mnuRecipes_Click);
    boundary.connect(m_ui->mnuAbout, &QAction::triggered, this, &frmMain::mnuAbout_Click);
    boundary.connect(m_ui->mnuIngredient, &QAction::triggered, this, &frmMain::mnuIngredient_Click);
    boundary.connect(m_ui->mnuUtensil, &QAction::triggered, this, &frmMain::mnuUtensil_Click);
}

frmMain::~frmMain() = default;

std::optional<int> frmMain::MDIForm_Load(const std::filesystem::path &importPath)
{
    const bool opened = runWithOffer([this] {
        m_importRecipe->Form_Load();
        m_importRecipe->openDataSources();
    });
    if (importPath.empty())
        return {};

    auto outcome = frmImportRecipe::Outcome::NotImported;
    if (opened)
        runWithOffer([&] { outcome = m_importRecipe->ImportSRFFile(importPath); });
    return outcome == frmImportRecipe::Outcome::Imported ? 0 : 1;
}

// Runs the handler again if it has failed and the user has had a copy of the database put back.
// Returns whether it has succeeded.
bool frmMain::runWithOffer(const std::function<void()> &handler)
{
    for (;;) {
        if (m_frame.boundary().run(windowTitle(), handler))
            return true;
        if (!m_copyOffer.takePutBack())
            return false;
    }
}

void frmMain::mnuImport_Click()
{
    m_frame.show(m_frame.load<frmImport>(*m_importRecipe));
}

void frmMain::mnuExport_Click()
{
    exportWebPages(m_frame.interaction());
}

void frmMain::mnuSettings_Click()
{
    frmSettings settings(m_frame.interaction(), m_frame.boundary(), this);
    settings.Form_Load();
    settings.exec();
}

// Ends the program without asking and without unloading the windows.
void frmMain::mnuExit_Click()
{
    QApplication::exit();
}

void frmMain::mnuRecipes_Click()
{
    m_frame.show(m_frame.load<frmRecipes>());
}

void frmMain::mnuAbout_Click()
{
    frmAbout about(m_frame.boundary(), this);
    about.Form_Load();
    about.exec();
}

void frmMain::mnuIngredient_Click()
{
    m_frame.show(m_frame.load<frmIngredient>());
}

void frmMain::mnuUtensil_Click()
{
    m_frame.show(m_frame.load<frmUtensil>());
}

void frmMain::MDIForm_Unload()
{
    m_frame.unloadAll();
    m_importRecipe.reset();
    QApplication::exit();
}

void frmMain::closeEvent(QCloseEvent *event)
{
    MDIForm_Unload();
    event->accept();
}
