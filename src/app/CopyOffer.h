#pragma once

#include <QCoreApplication>
#include <QDate>
#include <QSet>
#include <QString>

#include <utility>

class DatabaseCopies;
class Frame;
struct DatabaseCopy;

// Offers to put the newest copy of the recipe database in its place if a handler fails because the
// database is missing, damaged or not ours, and tells the user if a copy could not be made.
class CopyOffer
{
    Q_DECLARE_TR_FUNCTIONS(CopyOffer)

public:
    // Connects itself with the error boundary of the frame, which must not run any handler after
    // this object has been destroyed.
    explicit CopyOffer(Frame &frame);

    // Returns whether a copy has been put back since the last call, so that what has failed can be
    // tried again.
    bool takePutBack() { return std::exchange(m_hasPutBack, false); }

private:
    Q_DISABLE_COPY_MOVE(CopyOffer)

    bool offer(const QString &windowTitle, const QString &problem);
    static QString question(const DatabaseCopies &copies, const DatabaseCopy &copy, QDate today);
    void putBack(const DatabaseCopies &copies, const DatabaseCopy &copy, QDate today);
    void tellCopyFailure();

    Frame &m_frame;
    QSet<QString> m_declined; // problems in the running handler for which the user has said No
    bool m_hasPutBack = false;
};
