#include "app/StartPage.h"

#include "platform/ApplicationInformation.h"
#include "ui_StartPage.h"

#include <QAction>
#include <QIcon>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

using namespace Qt::Literals::StringLiterals;

void StartLink::paintEvent(QPaintEvent *event)
{
    QCommandLinkButton::paintEvent(event);
    if (!hasFocus())
        return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.state |= QStyle::State_KeyboardFocusChange; // also before the first key
    QStylePainter(this).drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

StartPage::StartPage(QAction &recipes, QAction &import, QAction &ingredients, QAction &exportPages)
    : m_ui(std::make_unique<Ui::StartPage>())
{
    m_ui->setupUi(this);
    constexpr QSize pictureSize(64, 64);
    const QIcon picture(u":/icons/pantrywise.svg"_s);
    m_ui->lblPicture->setPixmap(picture.pixmap(pictureSize, devicePixelRatioF()));
    QFont large = m_ui->lblName->font();
    large.setPointSizeF(large.pointSizeF() * 2);
    large.setBold(true);
    m_ui->lblName->setFont(large);
    m_ui->lblName->setText(platform::productName());

    connect(m_ui->cmdRecipes, &QPushButton::clicked, &recipes, &QAction::trigger);
    connect(m_ui->cmdImport, &QPushButton::clicked, &import, &QAction::trigger);
    connect(m_ui->cmdIngredients, &QPushButton::clicked, &ingredients, &QAction::trigger);
    connect(m_ui->cmdExport, &QPushButton::clicked, &exportPages, &QAction::trigger);
    setFocusProxy(m_ui->cmdRecipes);
}

StartPage::~StartPage() = default;
