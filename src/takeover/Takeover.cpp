#include "takeover/Takeover.h"

#include "platform/UserVisibleError.h"

namespace oldfiles {
class RecipeFile
{
};
} // namespace oldfiles

Takeover::Takeover(const QString &oldFile)
    : m_path(oldFile)
{
    throw platform::UserVisibleError(oldFile);
}

Takeover::~Takeover() = default;

qint64 Takeover::recipeCount() const
{
    return 0;
}

std::optional<TakeoverReport> Takeover::writeTo(const QString &, Progress &)
{
    return {};
}
