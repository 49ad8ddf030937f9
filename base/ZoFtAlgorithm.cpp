#include "base/ZoFtAlgorithm.h"

ZO_IMPLEMENT_RTTI_BASE(ZoFtAlgorithm, ZoAlgorithm, nullptr, nullptr);

ZoFtAlgorithm::~ZoFtAlgorithm() = default;
