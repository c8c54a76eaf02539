#include "Hands.h"

#include <QApplication>
#include <QProcess>
#include <QStyleOptionTitleBar>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

namespace {

void xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start(u"xdotool"_s, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("xdotool %s failed", qUtf8Printable(arguments.join(u' ')));
}

QStringList mouseTo(QPoint position)
{
    return {u"mousemove"_s, QString::number(position.x()), QString::number(position.y())};
}

} // namespace

Hands::Hands(QWidget &window)
    : m_window(window)
{
}

bool Hands::areReal()
{
    return QApplication::platformName() == u"xcb"_s;
}

void Hands::type(const QStringList &keys) const
{
    if (areReal()) {
        xdotool(QStringList{u"key"_s} + keys);
        return;
    }
    for (const QString &key : keys) {
        const QKeyCombination combination = QKeySequence(key)[0];
        QTest::keyClick(m_window.windowHandle(), combination.key(),
                        combination.keyboardModifiers());
        if (combination.keyboardModifiers().testFlag(Qt::ControlModifier))
            QTest::keyRelease(m_window.windowHandle(), Qt::Key_Control, Qt::ControlModifier);
    }
}

void Hands::click(QPoint globalPosition, int times) const
{
    if (areReal()) {
        xdotool(mouseTo(globalPosition)
                + QStringList{u"click"_s, u"--repeat"_s, QString::number(times), u"--delay"_s,
                              u"20"_s, u"1"_s});
        return;
    }
    const QPoint position = m_window.windowHandle()->mapFromGlobal(globalPosition);
    if (times == 2)
        QTest::mouseDClick(m_window.windowHandle(), Qt::LeftButton, {}, position);
    else
        QTest::mouseClick(m_window.windowHandle(), Qt::LeftButton, {}, position);
}

void Hands::move(QPoint globalPosition) const
{
    xdotool(mouseTo(globalPosition));
}

void Hands::wheelDown(QPoint globalPosition) const
{
    QWheelEvent event(m_window.windowHandle()->mapFromGlobal(globalPosition), globalPosition, {},
                      {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(m_window.windowHandle(), &event);
}

QPoint onTitleBar(const QWidget &child, QStyle::SubControl part)
{
    const QWidget *shell = child.parentWidget();
    const QStyle &style = *shell->style();
    QStyleOptionTitleBar option;
    option.initFrom(shell);
    option.subControls = QStyle::SC_All;
    option.titleBarFlags = shell->windowFlags();
    option.titleBarState = static_cast<int>(shell->windowState());
    option.rect.setHeight(style.pixelMetric(QStyle::PM_TitleBarHeight, &option, shell));
    const QRect rect = style.subControlRect(QStyle::CC_TitleBar, &option, part, shell);
    return shell->mapToGlobal(rect.center());
}
