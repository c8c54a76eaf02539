#include "widgets/ProgressDialog.h"

#include "interaction/ControlCharacters.h"
#include "ui_ProgressDialog.h"

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

ProgressDialog::ProgressDialog(const QString &title, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::ProgressDialog>())
{
    m_ui->setupUi(this);
    m_ui->layout->activate(); // the first name is already cut to the room that there will be
    setWindowTitle(title);
    setWindowModality(Qt::ApplicationModal);
    connect(m_ui->cmdStop, &QPushButton::clicked, this, &ProgressDialog::reject);
}

ProgressDialog::~ProgressDialog() = default;

bool ProgressDialog::update(qsizetype piece, qsizetype pieces, const QString &name)
{
    if (!m_isStopped && isTimeToShow()) {
        showPiece(piece, pieces, name);
        show();
        QCoreApplication::processEvents();
    }
    return !m_isStopped;
}

void ProgressDialog::reject()
{
    m_isStopped = true;
    m_ui->cmdStop->setEnabled(false);
}

bool ProgressDialog::isTimeToShow()
{
    const auto now = Clock::now();
    if (isVisible() && now - m_last < betweenPictures)
        return false;
    m_worked += std::min(now - m_last, longestPiece);
    m_last = now;
    return m_worked >= patience;
}

void ProgressDialog::showPiece(qsizetype piece, qsizetype pieces, const QString &name)
{
    const QLocale locale;
    m_ui->lblPiece->setText(tr("%1 of %2").arg(locale.toString(piece), locale.toString(pieces)));
    m_ui->lblName->setText(m_ui->lblName->fontMetrics().elidedText(
        escapeControlCharacters(name), Qt::ElideMiddle, m_ui->lblName->width()));
    m_ui->progressBar->setMaximum(static_cast<int>(pieces));
    m_ui->progressBar->setValue(static_cast<int>(piece - 1));
}
