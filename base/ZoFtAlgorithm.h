/// @class ZoFtAlgorithm
/// ZoFtAlgorithm: an intermediate base of the algorithm frame; it adds nothing to ZoAlgorithm but
/// its place in the type registry, so that callers can tell its family of algorithms apart.
/// @ingroup graphs
#pragma once

#include "base/ZoAlgorithm.h"
#include "platform/ZoExport.h"

class ZO_API ZoFtAlgorithm : public ZoAlgorithm
{
    ZO_DECLARE_RTTI()

    ZoFtAlgorithm() = default;
    ~ZoFtAlgorithm() override;
};
