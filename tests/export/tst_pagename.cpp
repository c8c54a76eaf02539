#include "PageName.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestPageName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comeFromTitles();
    void areUniqueAndStay();
};

void TestPageName::comeFromTitles()
{
    const struct {
        QString title;
        QString name; // a regular expression
    } table[] = {
        {u"Autumn Soup 2"_s, u"autumn-soup-2"_s},
        {u"Crème Brûlée"_s, u"creme-brulee_[0-9a-f]{6}"_s},
        {u"Straße Łódź Ærø kısır"_s, u"strasse-lodz-aero-kisir_.{6}"_s},
        {u"Baba's  (best)! Soup"_s, u"babas-best-soup_.{6}"_s},
        {u"../../etc/passwd"_s, u"etc-passwd_.{6}"_s},
        {u"борщ"_s, u"recipe_.{6}"_s},
        {u""_s, u"recipe_.{6}"_s},
        {u"Soup\0.exe"_s, u"soup-exe_.{6}"_s},
        {u"CON"_s, u"con_.{6}"_s},
        {u"lpt1"_s, u"lpt1_.{6}"_s},
        {u"Index"_s, u"index_.{6}"_s},
        {u"a "_s.repeated(500), u"a(-a){29}_.{6}"_s},
    };
    for (const auto &[title, name] : table) {
        const QString page = RecipePageNames().take(title, 1);
        QVERIFY2(QRegularExpression(u"\\A"_s + name + u"\\.html\\z"_s).match(page).hasMatch(),
                 qPrintable(page));
    }
    QCOMPARE(typePageName(u"Grains/Bean/Rice"_s), u"type_grains-bean-rice.html"_s);
}

// Whatever stands beside a title, and with whatever case it is written, its page has the same name.
void TestPageName::areUniqueAndStay()
{
    const QStringList titles{u"creme"_s, u"Crème"_s,   u"CRE\u0301ME"_s, u"Creme!"_s,
                             u"CREME"_s, u"Cre\nme"_s, u"Cre me"_s,      u"Cre-me"_s};
    RecipePageNames together;
    QSet<QString> names;
    for (qsizetype i = 0; i < titles.size(); ++i) {
        const QString name = together.take(titles[i], i);
        const bool isSameTitle = titles[i] == u"CREME"; // as the first one, which came before
        QCOMPARE(name == RecipePageNames().take(titles[i], i), !isSameTitle);
        names.insert(name);
    }
    QCOMPARE(names.size(), titles.size());
    QCOMPARE(RecipePageNames().take(u"CRÈME"_s, 1), RecipePageNames().take(u"Crème"_s, 2));
}

QTEST_GUILESS_MAIN(TestPageName)
#include "tst_pagename.moc"
