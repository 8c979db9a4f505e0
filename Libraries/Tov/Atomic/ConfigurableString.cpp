#include "ConfigurableString.h"
#include <algorithm>

namespace tov
{

TOV_BEGIN_CLASS (ConfigurableString)
TOV_END_CLASS()

int ConfigurableString::getIndexInChoices() const
{
    const auto choices = getChoices();
    const auto found = std::find (choices.begin(), choices.end(), value);
    return found != choices.end() ? (int) (found - choices.begin()) : -1;
}

} // namespace tov
