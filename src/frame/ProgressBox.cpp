#include "ProgressBox.h"

#include "VisibleText.h"
#include "ui_ProgressBox.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 500ms;
constexpr auto betweenPictures = 100ms;

// Pieces are short. A longer time between two of them was a question to the user, and no work.
constexpr std::chrono::steady_clock::duration longestPiece = 100ms;

} // namespace

ProgressBox::ProgressBox(const QString &title, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::ProgressBox>())
{
    m_ui->setupUi(this);
    m_ui->layout->activate(); // the first name is already cut to the room that there will be
    setWindowTitle(title);
    setWindowModality(Qt::ApplicationModal);
    connect(m_ui->cmdStop, &QPushButton::clicked, this, &ProgressBox::reject);
}

ProgressBox::~ProgressBox() = default;

bool ProgressBox::goOn(qsizetype piece, qsizetype pieces, const QString &name)
{
    if (!m_isStopped && isTimeToShow()) {
        showPiece(piece, pieces, name);
        show();
        QCoreApplication::processEvents();
    }
    return !m_isStopped;
}

void ProgressBox::reject()
{
    m_isStopped = true;
    m_ui->cmdStop->setEnabled(false);
}

bool ProgressBox::isTimeToShow()
{
    const auto now = Clock::now();
    if (isVisible() && now - m_last < betweenPictures)
        return false;
    m_worked += std::min(now - m_last, longestPiece);
    m_last = now;
    return m_worked >= patience;
}

void ProgressBox::showPiece(qsizetype piece, qsizetype pieces, const QString &name)
{
    const QLocale locale;
    m_ui->lblPiece->setText(tr("%1 of %2").arg(locale.toString(piece), locale.toString(pieces)));
    m_ui->lblName->setText(m_ui->lblName->fontMetrics().elidedText(
        visibleText(name), Qt::ElideMiddle, m_ui->lblName->width()));
    m_ui->progressBar->setMaximum(static_cast<int>(pieces));
    m_ui->progressBar->setValue(static_cast<int>(piece - 1));
}
