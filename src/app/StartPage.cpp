#include "app/StartPage.h"

#include "platform/ApplicationInformation.h"
#include "ui_StartPage.h"

#include <QAction>
#include <QIcon>
#include <QStyleOptionButton>
#include <QStylePainter>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int linkMargin = 10; // in pixels, around the texts of a link

} // namespace

QFont StartLink::titleFont() const
{
    QFont bold = font();
    bold.setBold(true);
    return bold;
}

QSize StartLink::sizeHint() const
{
    const QFontMetrics title(titleFont());
    return QSize(std::max(title.horizontalAdvance(text()),
                          fontMetrics().horizontalAdvance(accessibleDescription())),
                 title.lineSpacing() + fontMetrics().lineSpacing())
        .grownBy({linkMargin, linkMargin, linkMargin, linkMargin});
}

void StartLink::paintEvent(QPaintEvent * /*event*/)
{
    QStylePainter painter(this);
    QStyleOptionButton button;
    initStyleOption(&button);
    if (underMouse() || isDown())
        painter.drawPrimitive(QStyle::PE_PanelButtonCommand, button);
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.state |= QStyle::State_KeyboardFocusChange; // also before the first key
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
    const QRect inside = rect().adjusted(linkMargin, linkMargin, -linkMargin, -linkMargin);
    style()->drawItemText(&painter, inside, Qt::AlignLeading | Qt::AlignBottom, palette(), true,
                          accessibleDescription(), foregroundRole());
    painter.setFont(titleFont());
    style()->drawItemText(&painter, inside, Qt::AlignLeading | Qt::AlignTop, palette(), true,
                          text(), foregroundRole());
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
