#include "Frame.h"
#include "Hands.h"
#include "StrictDoorway.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

class Form final : public ChildWindow
{
    Q_OBJECT

public:
    explicit Form(Frame &frame)
        : ChildWindow(frame)
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(&other);
        layout->addWidget(&save);
        layout->addWidget(&view);
    }

    QPushButton other{u"Other"_s};
    QPushButton save{u"&Save"_s};
    QPushButton view{u"&View"_s};
};

} // namespace

class tst_AccessKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The form's button is pressed every time, whatever the menu bar has under the same key.
    void sharedWithTheMenuBar()
    {
        QMainWindow window;
        window.menuBar()->addMenu(u"&Search"_s)->setEnabled(false);
        window.menuBar()->addMenu(u"&View"_s)->addAction(u"Something"_s);
        QMdiArea area;
        window.setCentralWidget(&area);
        StrictDoorway doorway;
        Frame frame(doorway, area, [] {});
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto &form = frame.load<Form>();
        frame.show(form);
        QCoreApplication::processEvents();

        const QSignalSpy saved(&form.save, &QPushButton::clicked);
        const QSignalSpy viewed(&form.view, &QPushButton::clicked);
        const Hands hands(window);
        for (int times = 1; times <= 3; ++times) {
            hands.type({u"alt+s"_s});
            QTRY_COMPARE(saved.count(), times);
            hands.type({u"alt+v"_s});
            QTRY_COMPARE(viewed.count(), times);
            window.resize(700 + 50 * times, 600); // a menu bar takes its keys anew then
            QCoreApplication::processEvents();
        }
        QVERIFY(!form.save.hasFocus() && !form.view.hasFocus());

        form.view.setEnabled(false); // then the key is the menu's
        QVERIFY(!window.menuBar()->activeAction());
        hands.type({u"alt+v"_s});
        QTRY_VERIFY(window.menuBar()->activeAction());
        QCOMPARE(viewed.count(), 3);
    }
};

QTEST_MAIN(tst_AccessKeys)
#include "tst_accesskeys.moc"
