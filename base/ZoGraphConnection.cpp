#include "base/ZoGraphConnection.h"

ZoGraphConnection::ZoGraphConnection()
{
    init(nullptr, nullptr, 0.0f);
}

ZoGraphConnection::ZoGraphConnection(ZoGraphNode& source, ZoGraphNode& target)
{
    init(&source, &target, 0.0f);
}

ZoGraphConnection::ZoGraphConnection(ZoGraphNode& source, ZoGraphNode& target, float weight)
{
    init(&source, &target, weight);
}

ZoGraphConnection::~ZoGraphConnection() = default;

void ZoGraphConnection::init(ZoGraphNode* source, ZoGraphNode* target, float weight)
{
    m_sourcePosition = nullptr;
    m_targetPosition = nullptr;
    m_source = source;
    m_target = target;
    m_weight = weight;
    m_reserved = 0;
}
