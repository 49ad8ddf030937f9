#include "base/ZoMpGraphToShortestPath.h"

#include "base/ZoArray.h"
#include "base/ZoExceptionNoOutputData.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoHeap.h"
#include "base/ZoHeapElementSimple.h"

#include <cstring>

ZO_IMPLEMENT_RTTI_BASE(ZoMpGraphToShortestPath, ZoMpAlgorithm, nullptr, nullptr);

namespace {
const char16_t kSource[] = u"..\\base\\ZoMpGraphToShortestPath.cpp";
const uint32_t kInHeap = 1;

typedef ZoHeapElementSimple<ZoGraphNode*, float> Element;
typedef ZoGraphConnectionList::Position Position;

inline void prefetch(const void* address)
{
#if defined(__GNUC__)
    __builtin_prefetch(address);
#else
    (void)address;
#endif
}
} // namespace

ZoMpGraphToShortestPath::ZoMpGraphToShortestPath()
    : m_graph(nullptr), m_start(nullptr), m_end(nullptr), m_recordedGraph(nullptr), m_recordedCalculated(0)
{
}

ZoMpGraphToShortestPath::~ZoMpGraphToShortestPath()
{
    delete m_recordedGraph;
}

void ZoMpGraphToShortestPath::SetInput(ZoGraph& graph, ZoGraphNode& start, ZoGraphNode& end)
{
    m_graph = &graph;
    m_start = &start;
    m_end = &end;
    setCalculated(0);
}

int ZoMpGraphToShortestPath::checkInputData() const
{
    return m_graph != nullptr && m_start != nullptr && m_end != nullptr;
}

ZoGraphPathIterator ZoMpGraphToShortestPath::GetOutput() const
{
    if (!IsCalculated())
        throw ZoExceptionNoOutputData(kSource, GetClassNameW(), u"GetOutput", 203);
    return ZoGraphPathIterator(*m_start, *m_end, ZoGraphPathIterator::eForward);
}

int ZoMpGraphToShortestPath::compute()
{
    if (IsCalculated())
        return 1;
    m_graph->RemoveAttributes(kInHeap);
    const uint32_t count = m_graph->CreateIndices();
    m_graph->ResetWeights();
    m_start->SetWeight(0.0f);
    m_start->SetPreviousNodeOnPath(nullptr);
    m_start->SetNextNodeOnPath(nullptr);
    m_end->SetPreviousNodeOnPath(nullptr);
    m_end->SetNextNodeOnPath(nullptr);

    ZoArray<Element, 0> elements;
    elements.SetElementCount(count, 0);
    ZoArray<ZoGraphNode*, 0> predecessors;
    predecessors.SetElementCount(count, 0);
    predecessors.Reset();
    ZoHeap<Element> heap;
    heap.Reserve(count);

    Element* first = &elements[m_start->GetIndex()];
    first->SetKey(0.0f);
    first->SetData(m_start);
    heap.Push(first);
    m_start->AddAttributes(kInHeap);
    while (!heap.IsEmpty()) {
        ZoGraphNode* node = heap.TakeMinimum()->GetData();
        node->RemoveAttributes(kInHeap);
        if (node == m_end)
            break;
        // The next node to leave the heap is most likely the new minimum: have its connection
        // list on the way while this node's connections are relaxed.
        if (!heap.IsEmpty()) {
            const ZoGraphNode* next = heap.GetMinimum()->GetData();
            prefetch(&next->m_outgoing);
            prefetch(&next->m_weight);
            prefetch(next->m_outgoing.GetHeadPosition());
        }
        const float distance = node->GetWeight();
        const ZoGraphConnectionList& outgoing = node->GetOutgoingConnections();
        // The connections and their targets lie scattered over the heap. Asking for all of them
        // before they are used lets the memory fetch them side by side instead of one at a time;
        // on large graphs that is most of the search's time.
        for (Position position = outgoing.GetHeadPosition(); position != nullptr;)
            prefetch(outgoing.GetNext(position).Get());
        for (Position position = outgoing.GetHeadPosition(); position != nullptr;)
            prefetch(&outgoing.GetNext(position)->m_target->m_weight);
        for (Position position = outgoing.GetHeadPosition(); position != nullptr;) {
            const ZoGraphConnection& connection = *outgoing.GetNext(position);
            ZoGraphNode& target = *connection.m_target;
            const float reached = distance + connection.m_weight;
            if (!(target.m_weight > reached))
                continue;
            target.m_weight = reached;
            const uint32_t index = target.m_index;
            predecessors[index] = node;
            Element* element = &elements[index];
            if (target.m_attributes & kInHeap) {
                heap.LowerKey(element, reached);
            } else {
                element->SetKey(reached);
                element->SetData(&target);
                heap.Push(element);
                target.m_attributes |= kInHeap;
            }
        }
    }
    if (m_end->GetWeight() == ZoGraphNode::GetInitialWeight())
        return 0;
    for (ZoGraphNode* current = m_end; current != m_start;) {
        ZoGraphNode* previous = predecessors[current->GetIndex()];
        previous->SetNextNodeOnPath(current);
        current = previous;
    }
    return 1;
}

std::vector<uint32_t> ZoMpGraphToShortestPath::pathIndices() const
{
    std::vector<uint32_t> indices;
    if (!IsCalculated())
        return indices;
    for (ZoGraphPathIterator it = GetOutput(); it.HasMoreElements();)
        indices.push_back(it.GetNext().GetIndex());
    return indices;
}

void ZoMpGraphToShortestPath::serializeUnitTestInput(ZoStreamWriteBinary& stream) const
{
    stream.WriteVersion(0);
    if (!checkInputData()) {
        stream << static_cast<uint32_t>(0);
        return;
    }
    const uint32_t count = m_graph->CreateIndices();
    stream << count;
    for (ZoGraph::NodeList::Position position = m_graph->GetNodes().GetHeadPosition(); position != nullptr;) {
        const ZoGraphNode& node = *m_graph->GetNodes().GetNext(position);
        const ZoGraphConnectionList& outgoing = node.GetOutgoingConnections();
        stream << node.GetName() << outgoing.GetCount();
        for (ZoGraphConnectionList::Position connection = outgoing.GetHeadPosition(); connection != nullptr;) {
            const ZoGraphConnection& edge = *outgoing.GetNext(connection);
            stream << edge.GetNode(ZoGraphConnection::eTarget).GetIndex() << edge.GetWeight();
        }
    }
    stream << m_start->GetIndex() << m_end->GetIndex();
}

void ZoMpGraphToShortestPath::serializeUnitTestInput(ZoStreamReadBinary& stream)
{
    releaseUnitTestInput();
    stream.ReadAndCompareVersion(0);
    uint32_t count = 0;
    stream >> count;
    if (count == 0)
        return;
    m_recordedGraph = new ZoGraph();
    // Nodes are made as they are read, so a damaged count meets the end of the data first.
    std::vector<ZoGraphNode*> nodes;
    std::vector<std::vector<std::pair<uint32_t, float>>> connections;
    for (uint32_t i = 0; i < count; ++i) {
        CString name;
        uint32_t outgoing = 0;
        stream >> name >> outgoing;
        nodes.push_back(new ZoGraphNode(name));
        m_recordedGraph->InsertNode(nodes.back());
        connections.emplace_back();
        for (uint32_t k = 0; k < outgoing; ++k) {
            uint32_t target = 0;
            float weight = 0.0f;
            stream >> target >> weight;
            connections.back().emplace_back(target, weight);
        }
    }
    uint32_t start = 0, end = 0;
    stream >> start >> end;
    for (uint32_t i = 0; i < count; ++i)
        for (const auto& connection : connections[i]) {
            if (connection.first >= count)
                throw ZoExceptionStream(kSource, u"ZoMpGraphToShortestPath", u"serializeUnitTestInput", ZoException::sc_uiNoLine);
            nodes[i]->AddConnection(*nodes[connection.first], connection.second);
        }
    if (start >= count || end >= count)
        throw ZoExceptionStream(kSource, u"ZoMpGraphToShortestPath", u"serializeUnitTestInput", ZoException::sc_uiNoLine);
    SetInput(*m_recordedGraph, *nodes[start], *nodes[end]);
}

void ZoMpGraphToShortestPath::serializeUnitTestOutput(ZoStreamWriteBinary& stream) const
{
    stream.WriteVersion(0);
    const std::vector<uint32_t> indices = pathIndices();
    stream << static_cast<int32_t>(IsCalculated()) << static_cast<uint32_t>(indices.size());
    for (uint32_t index : indices)
        stream << index;
}

void ZoMpGraphToShortestPath::serializeUnitTestOutput(ZoStreamReadBinary& stream)
{
    releaseUnitTestOutput();
    stream.ReadAndCompareVersion(0);
    int32_t calculated = 0;
    uint32_t length = 0;
    stream >> calculated >> length;
    m_recordedCalculated = calculated;
    for (uint32_t i = 0; i < length; ++i) {
        uint32_t index = 0;
        stream >> index;
        m_recordedPath.push_back(index);
    }
}

void ZoMpGraphToShortestPath::releaseUnitTestInput()
{
    if (m_recordedGraph != nullptr && m_graph == m_recordedGraph) {
        m_graph = nullptr;
        m_start = nullptr;
        m_end = nullptr;
        setCalculated(0);
    }
    delete m_recordedGraph;
    m_recordedGraph = nullptr;
}

void ZoMpGraphToShortestPath::releaseUnitTestOutput()
{
    m_recordedCalculated = 0;
    m_recordedPath.clear();
}

int ZoMpGraphToShortestPath::compareResult() const
{
    return (IsCalculated() != 0) == (m_recordedCalculated != 0) && pathIndices() == m_recordedPath;
}
