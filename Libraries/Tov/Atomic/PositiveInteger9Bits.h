#pragma once

#include "PositiveInteger.h"

namespace tov
{

/** A number from 0 to 511; it also reads the {value, ...} pair that older documents hold. */
class PositiveInteger9Bits : public PositiveInteger
{
public:
    TOV_DECLARE_CLASS (PositiveInteger9Bits, PositiveInteger)

    using PositiveInteger::PositiveInteger;

    bool load (ObjectImporter& importer) override;
};

} // namespace tov
