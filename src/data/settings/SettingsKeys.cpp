#include "data/settings/SettingsKeys.h"

#include "platform/ApplicationInformation.h"

using namespace Qt::Literals::StringLiterals;

static QString basePath()
{
    return "Software\\Quillmoor\\"_L1 + platform::productName();
}

QString sortingKey()
{
    return basePath() + "\\Sorting"_L1;
}

QString htmlKey()
{
    return basePath() + "\\HTML"_L1;
}
