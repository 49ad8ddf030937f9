#pragma once

#include "base/ZoAlgorithm.h"
#include "platform/ZoExport.h"

/// ZoMpAlgorithm: an intermediate base of the algorithm frame; it adds nothing to ZoAlgorithm but
/// its place in the type registry, so that callers can tell its family of algorithms apart.
/// @ingroup graphs
class ZO_API ZoMpAlgorithm : public ZoAlgorithm
{
    ZO_DECLARE_RTTI()

    ZoMpAlgorithm() = default;
    ~ZoMpAlgorithm() override;
};
