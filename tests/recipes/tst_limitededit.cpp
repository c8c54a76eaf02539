#include "LimitedEdit.h"

#include <QApplication>
#include <QClipboard>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_LimitedEdit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void limit_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("keys"); // < is backspace, V pastes "9876", A selects all
        QTest::addColumn<QString>("shown");

        QTest::newRow("typed") << u""_s << u"123"_s << u"12"_s;
        QTest::newRow("pasted") << u"1"_s << u"V"_s << u"19"_s;
        QTest::newRow("stored beyond") << u"120"_s << u""_s << u"120"_s;
        QTest::newRow("nothing fits behind it") << u"120"_s << u"5V"_s << u"120"_s;
        QTest::newRow("made shorter") << u"4.125"_s << u"<<"_s << u"4.1"_s;
        QTest::newRow("and not longer again") << u"4.125"_s << u"<<5"_s << u"4.1"_s;
        QTest::newRow("down to the limit") << u"120"_s << u"<<56"_s << u"15"_s;
        QTest::newRow("pasted over") << u"120"_s << u"AV"_s << u"98"_s;
    }
    void limit()
    {
        QFETCH(const QString, stored);
        QFETCH(const QString, keys);
        LimitedEdit edit;
        edit.setEntryLimit(2);
        edit.showStored(u"a longer one before"_s);
        edit.showStored(stored);
        edit.end(false);
        QApplication::clipboard()->setText(u"9876"_s);
        for (const QChar key : keys) {
            if (key == u'<')
                QTest::keyClick(&edit, Qt::Key_Backspace);
            else if (key == u'A' || key == u'V')
                QTest::keyClick(&edit, static_cast<Qt::Key>(key.unicode()), Qt::ControlModifier);
            else
                QTest::keyClick(&edit, key.toLatin1());
        }
        QTEST(edit.text(), "shown");
    }
};

QTEST_MAIN(tst_LimitedEdit)
#include "tst_limitededit.moc"
