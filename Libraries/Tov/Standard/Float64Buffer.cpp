#include "Float64Buffer.h"

namespace tov
{

TOV_BEGIN_CLASS (Float64Buffer)
TOV_END_CLASS()

} // namespace tov
