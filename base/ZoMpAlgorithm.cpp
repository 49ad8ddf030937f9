#include "base/ZoMpAlgorithm.h"

ZO_IMPLEMENT_RTTI_BASE(ZoMpAlgorithm, ZoAlgorithm, nullptr, nullptr);

ZoMpAlgorithm::~ZoMpAlgorithm() = default;
