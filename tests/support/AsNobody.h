#pragma once

#include <QTest>

#include <unistd.h>

// Permissions do not restrict root, so the action runs as another user then.
template <typename Action>
void asNobody(Action action)
{
    const uid_t nobody = getuid() == 0 ? 65534 : getuid();
    const uid_t me = getuid();
    QCOMPARE(setresuid(nobody, nobody, me), 0);
    action();
    QCOMPARE(setresuid(me, me, me), 0);
}
