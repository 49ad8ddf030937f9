#include "base/ZoAnimatedObject.h"

#include <cfloat>

ZO_IMPLEMENT_RTTI(ZoAnimatedObject, nullptr, nullptr);

ZoAnimatedObject::ZoAnimatedObject()
    : m_reserved(1.0f), m_animationLength(300.0f), m_endless(0), m_endlessStopped(0), m_running(0), m_animationId(0)
{
}

ZoAnimatedObject::ZoAnimatedObject(const ZoPerformanceCounter& counter)
    : m_reserved(1.0f), m_animationLength(300.0f), m_endless(0), m_endlessStopped(0), m_running(0), m_timer(counter),
      m_animationId(0)
{
}

ZoAnimatedObject::~ZoAnimatedObject() = default;

int ZoAnimatedObject::ContinueAnimation()
{
    if (m_endless) {
        if (m_endlessStopped) {
            continueAnimation(FLT_MAX);
            m_running = 0;
            onCleanAfterAnimation();
            return 0;
        }
        continueAnimation(static_cast<float>(m_timer.GetElapsedTime()));
        return 1;
    }
    if (m_animationLength > 0.0f) {
        const float progress = static_cast<float>(m_timer.GetElapsedTime()) / m_animationLength;
        if (progress < 1.0f) {
            continueAnimation(progress);
            return 1;
        }
    }
    m_timer.Stop();
    m_running = 0;
    continueAnimation(1.0f);
    onCleanAfterAnimation();
    return 0;
}

void ZoAnimatedObject::EndAnimation()
{
    m_running = 0;
    continueAnimation(1.0f);
    onCleanAfterAnimation();
}

void ZoAnimatedObject::TerminateAnimation()
{
    m_running = 0;
    onCleanAfterAnimation();
}

void ZoAnimatedObject::startAnimation(int endless)
{
    m_timer.Reset();
    m_timer.Start();
    m_endless = endless;
    m_endlessStopped = 0;
    m_running = 1;
}

void ZoAnimatedObject::continueAnimation(float) {}

void ZoAnimatedObject::onCleanAfterAnimation() {}
