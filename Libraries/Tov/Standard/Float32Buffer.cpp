#include "Float32Buffer.h"

namespace tov
{

TOV_BEGIN_CLASS (Float32Buffer, { "heightWhenUsedInParameterRow", "100" })
TOV_END_CLASS()

} // namespace tov
