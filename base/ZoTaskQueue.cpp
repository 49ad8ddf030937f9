#include "base/ZoTaskQueue.h"

#include "base/ZoCriticalSectionAuto.h"

ZoTaskQueue::ZoTaskQueue() : m_tasks(10), m_lock(ZoCriticalSection::sc_uiDefaultSpinCount), m_taskAdded(true), m_handlers(10) {}

ZoTaskQueue::ZoTaskQueue(const ZoTaskQueue& other) : m_tasks(10), m_lock(ZoCriticalSection::sc_uiDefaultSpinCount), m_taskAdded(true), m_handlers(10)
{
    copyFrom(other);
}

ZoTaskQueue& ZoTaskQueue::operator=(const ZoTaskQueue& other)
{
    if (this != &other)
        copyFrom(other);
    return *this;
}

ZoTaskQueue::~ZoTaskQueue() = default;

// The lists are filled element by element rather than by list assignment, which would share the
// other queue's node pool: two queues used by different threads must not share one.
void ZoTaskQueue::copyFrom(const ZoTaskQueue& other)
{
    std::vector<ZoSmartPointer<ZoTask>> tasks;
    std::vector<ZoSmartPointer<ZoTaskQueueEventHandler>> handlers;
    {
        ZoCriticalSectionAuto guard(other.m_lock);
        for (TaskList::Position position = other.m_tasks.GetHeadPosition(); position != nullptr;)
            tasks.push_back(other.m_tasks.GetNext(position));
        for (HandlerList::Position position = other.m_handlers.GetHeadPosition(); position != nullptr;)
            handlers.push_back(other.m_handlers.GetNext(position));
    }
    ZoCriticalSectionAuto guard(m_lock);
    m_tasks.RemoveAll();
    m_handlers.RemoveAll();
    for (const ZoSmartPointer<ZoTask>& task : tasks)
        m_tasks.AddTail(task);
    for (const ZoSmartPointer<ZoTaskQueueEventHandler>& handler : handlers)
        m_handlers.AddTail(handler);
}

void ZoTaskQueue::AddTask(ZoSmartPointer<ZoTask> task)
{
    ZoCriticalSectionAuto guard(m_lock);
    for (HandlerList::Position position = m_handlers.GetHeadPosition(); position != nullptr;) {
        const ZoSmartPointer<ZoTaskQueueEventHandler> handler = m_handlers.GetNext(position);
        handler->onTaskQueueEvent(ZoTaskQueueEventHandler::eTaskAdded, task);
    }
    m_tasks.AddTail(task);
    m_taskAdded.Pulse();
}

uint32_t ZoTaskQueue::GetCount() const
{
    ZoCriticalSectionAuto guard(m_lock);
    return m_tasks.GetCount();
}

int ZoTaskQueue::IsEmpty() const
{
    ZoCriticalSectionAuto guard(m_lock);
    return m_tasks.IsEmpty();
}

void ZoTaskQueue::RegisterEventHandler(ZoSmartPointer<ZoTaskQueueEventHandler> handler)
{
    ZoCriticalSectionAuto guard(m_lock);
    if (m_handlers.FindPos(handler) == nullptr)
        m_handlers.AddTail(handler);
}

void ZoTaskQueue::UnregisterEventHandler(ZoSmartPointer<ZoTaskQueueEventHandler> handler)
{
    ZoCriticalSectionAuto guard(m_lock);
    if (HandlerList::Position position = m_handlers.FindPos(handler))
        m_handlers.RemoveAt(position);
}

ZoSmartPointer<ZoTask> ZoTaskQueue::takeTask()
{
    ZoCriticalSectionAuto guard(m_lock);
    if (m_tasks.IsEmpty())
        return nullptr;
    ZoSmartPointer<ZoTask> task = m_tasks.GetHead();
    m_tasks.RemoveHead();
    return task;
}

void ZoTaskQueue::notifyHandlers(ZoTaskQueueEventHandler::EEvent event, const ZoSmartPointer<ZoTask>& task)
{
    std::vector<ZoSmartPointer<ZoTaskQueueEventHandler>> handlers;
    {
        ZoCriticalSectionAuto guard(m_lock);
        for (HandlerList::Position position = m_handlers.GetHeadPosition(); position != nullptr;)
            handlers.push_back(m_handlers.GetNext(position));
    }
    for (const ZoSmartPointer<ZoTaskQueueEventHandler>& handler : handlers)
        handler->onTaskQueueEvent(event, task);
}
