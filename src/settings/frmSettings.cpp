#include "settings/frmSettings.h"

#include "data/settings/HtmlSettings.h"
#include "data/settings/RegistryFunctions.h"
#include "data/settings/SettingsKeys.h"
#include "data/settings/SortOrder.h"
#include "frame/ErrorBoundary.h"
#include "interaction/Interaction.h"
#include "platform/ApplicationInformation.h"
#include "ui_frmSettings.h"
#include "widgets/StandardWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

void write(const QString &key, const QString &valueName, const QVariant &value)
{
    WriteRegistryValue(platform::HKEY_CURRENT_USER, key, valueName, value, platform::REG_SZ);
}

} // namespace

frmSettings::frmSettings(Interaction &interaction, const ErrorBoundary &boundary, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmSettings>())
    , m_interaction(interaction)
{
    m_ui->setupUi(this);
    const auto onClick = [&](const auto *box, auto choose, const QPushButton *button, auto clear) {
        boundary.connect(box, &FilePathEdit::clicked, this, choose);
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
    m_ui->cmbIngredients->setCurrentIndex(static_cast<int>(ingredientSortOrder()));
    m_ui->cmbRecipes->setCurrentIndex(static_cast<int>(recipeSortOrder()));
    m_ui->txtCategoryTemplate->setPath(categoryTemplate());
    m_ui->txtMainMenuTemplate->setPath(mainMenuTemplate());
    m_ui->txtRecipeTemplate->setPath(recipeTemplate());
    m_ui->optStyle2->setChecked(isSecondHtmlStyle());
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
    CreateRegistryKey(platform::HKEY_CURRENT_USER, sortingKey());
    write(sortingKey(), u"Ingredients"_s, m_ui->cmbIngredients->currentIndex());
    write(sortingKey(), u"Recipes"_s, m_ui->cmbRecipes->currentIndex());
    CreateRegistryKey(platform::HKEY_CURRENT_USER, htmlKey());
    write(htmlKey(), u"CategoryTemplate"_s, m_ui->txtCategoryTemplate->path());
    write(htmlKey(), u"MainMenuTemplate"_s, m_ui->txtMainMenuTemplate->path());
    write(htmlKey(), u"RecipeTemplate"_s, m_ui->txtRecipeTemplate->path());
    write(htmlKey(), u"HTMLStyle"_s, m_ui->optStyle2->isChecked());
}

void frmSettings::cmdCancel_Click()
{
    reject();
}

void frmSettings::chooseTemplate(FilePathEdit &box)
{
    const QString path =
        m_interaction.choose(FileChooser{.title = tr("Choose template file"),
                                         .description = tr("HTML Documents"),
                                         .patterns = {u"*.htm"_s, u"*.html"_s},
                                         .defaultSuffix = u"htm"_s,
                                         .directory = platform::programDirectory()});
    if (!path.isEmpty())
        box.setPath(path);
}
