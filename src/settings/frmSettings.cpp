#include "settings/frmSettings.h"

#include "data/settings/Settings.h"
#include "frame/ErrorBoundary.h"
#include "interaction/Interaction.h"
#include "platform/ApplicationInformation.h"
#include "ui_frmSettings.h"
#include "widgets/StandardWidgets.h"

using namespace Qt::Literals::StringLiterals;

frmSettings::frmSettings(Interaction &interaction, const ErrorBoundary &boundary, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmSettings>())
    , m_interaction(interaction)
{
    m_ui->setupUi(this);
    const auto onClick = [&](const auto *edit, auto choose, const QPushButton *button, auto clear) {
        boundary.connect(edit, &FilePathEdit::clicked, this, choose);
        boundary.connect(button, &QPushButton::clicked, this, clear);
    };
    onClick(m_ui->txtMainMenuTemplate, &frmSettings::txtMainMenuTemplate_Click,
            m_ui->cmdClearMainMenuTemplate, &frmSettings::cmdClearMainMenuTemplate_Click);
    onClick(m_ui->txtCategoryTemplate, &frmSettings::txtCategoryTemplate_Click,
            m_ui->cmdClearCategoryTemplate, &frmSettings::cmdClearCategoryTemplate_Click);
    onClick(m_ui->txtRecipeTemplate, &frmSettings::txtRecipeTemplate_Click,
            m_ui->cmdClearRecipeTemplate, &frmSettings::cmdClearRecipeTemplate_Click);
    connect(m_ui->Image1, &ClickableImage::clicked, m_ui->optStyle1, &QRadioButton::click);
    connect(m_ui->Image2, &ClickableImage::clicked, m_ui->optStyle2, &QRadioButton::click);
    boundary.connect(m_ui->cmdOk, &QPushButton::clicked, this, &frmSettings::cmdOk_Click);
    boundary.connect(m_ui->cmdCancel, &QPushButton::clicked, this, &frmSettings::cmdCancel_Click);
    resize(inches(*this, 6.5, 0).expandedTo(sizeHint()));
}

frmSettings::~frmSettings() = default;

void frmSettings::Form_Load()
{
    const Settings settings = Settings::load();
    m_ui->cmbIngredients->setCurrentIndex(static_cast<int>(settings.ingredientOrder));
    m_ui->cmbRecipes->setCurrentIndex(static_cast<int>(settings.recipeOrder));
    m_ui->txtCategoryTemplate->setPath(settings.pages.categoryTemplate);
    m_ui->txtMainMenuTemplate->setPath(settings.pages.mainMenuTemplate);
    m_ui->txtRecipeTemplate->setPath(settings.pages.recipeTemplate);
    m_ui->optStyle2->setChecked(settings.pages.style == PageStyle::Cookbook);
}

void frmSettings::txtMainMenuTemplate_Click()
{
    chooseTemplate(*m_ui->txtMainMenuTemplate);
}

void frmSettings::txtCategoryTemplate_Click()
{
    chooseTemplate(*m_ui->txtCategoryTemplate);
}

void frmSettings::txtRecipeTemplate_Click()
{
    chooseTemplate(*m_ui->txtRecipeTemplate);
}

void frmSettings::cmdClearMainMenuTemplate_Click()
{
    m_ui->txtMainMenuTemplate->setPath({});
}

void frmSettings::cmdClearCategoryTemplate_Click()
{
    m_ui->txtCategoryTemplate->setPath({});
}

void frmSettings::cmdClearRecipeTemplate_Click()
{
    m_ui->txtRecipeTemplate->setPath({});
}

void frmSettings::cmdOk_Click()
{
    accept();
    Settings settings;
    settings.ingredientOrder = static_cast<SortOrder>(m_ui->cmbIngredients->currentIndex());
    settings.recipeOrder = static_cast<SortOrder>(m_ui->cmbRecipes->currentIndex());
    settings.pages.categoryTemplate = m_ui->txtCategoryTemplate->path();
    settings.pages.mainMenuTemplate = m_ui->txtMainMenuTemplate->path();
    settings.pages.recipeTemplate = m_ui->txtRecipeTemplate->path();
    settings.pages.style =
        m_ui->optStyle2->isChecked() ? PageStyle::Cookbook : PageStyle::PlainCard;
    settings.save();
}

void frmSettings::cmdCancel_Click()
{
    reject();
}

void frmSettings::chooseTemplate(FilePathEdit &edit)
{
    const QString path =
        m_interaction.choose(FileChooser{.title = tr("Choose template file"),
                                         .description = tr("HTML Documents"),
                                         .patterns = {u"*.htm"_s, u"*.html"_s},
                                         .defaultSuffix = u"htm"_s,
                                         .directory = platform::programDirectory()});
    if (!path.isEmpty())
        edit.setPath(path);
}
