/// @class ZoAnimatedObject
/// ZoAnimatedObject: the base of objects that animate over a fixed length of time, or endlessly, and
/// are advanced by polling. The owner calls ContinueAnimation() on every frame; the object hands its
/// progress to continueAnimation(float), which derived classes implement to draw their state:
/// - a finite animation passes the fraction of its length that has elapsed (0 to below 1), and
///   exactly 1.0 once when it ends, followed by onCleanAfterAnimation();
/// - an endless animation passes the elapsed milliseconds (not normalised) until it is asked to stop,
///   then the largest float once, followed by onCleanAfterAnimation().
///
/// Registered with the type registry as "ZoAnimatedObject". Time comes from a ZoTimer in
/// milliseconds over the process's performance counter, or over a counter given at construction.
/// @ingroup concurrency
#pragma once

#include "base/ZoClassRTTI.h"
#include "base/ZoTimer.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoAnimatedObject : public ZoClassRTTI
{
    ZO_DECLARE_RTTI()

    /// Length 300 ms, not running, identifier 0.
    ZoAnimatedObject();
    /// The same, timed by the given counter (a simulated clock) instead of the process's.
    explicit ZoAnimatedObject(const ZoPerformanceCounter& counter);
    virtual ~ZoAnimatedObject();

    /// In milliseconds; a length of 0 or less makes the next poll end the animation.
    void SetAnimationLength(float milliseconds) { m_animationLength = milliseconds; }
    /// In milliseconds; 300 for a new object. Not used by endless animations.
    float GetAnimationLength() const { return m_animationLength; }
    /// The length is greater than 0.
    bool IsAnimated() const { return m_animationLength > 0.0f; }
    ///@{
    /// A number of the owner's choosing (to tell its animations apart); the object never reads it.
    void SetAnimationID(uint32_t id) { m_animationId = id; }
    uint32_t GetAnimationID() const { return m_animationId; }
    ///@}
    /// True from startAnimation() until the animation ends or is ended or terminated.
    bool IsAnimationRunning() const { return m_running != 0; }
    /// True once an endless animation has been asked to stop, until the next startAnimation(); the
    /// final frame follows at the next ContinueAnimation().
    bool IsEndlessAnimationStopped() const { return m_endlessStopped != 0; }

    /// Advances the animation; 1 while it goes on, 0 once it has ended (see the class comment).
    int ContinueAnimation();
    /// Ends now: not running, continueAnimation(1.0), onCleanAfterAnimation().
    void EndAnimation();
    /// Ends now without a final frame: not running, onCleanAfterAnimation() only.
    void TerminateAnimation();

protected:
    /// Resets and starts the timer; running, endless as given, not stopped.
    void startAnimation(int endless);
    /// Asks an endless animation to end at the next poll.
    void stopEndlessAnimation() { m_endlessStopped = 1; }

    /// Draws the state for the given progress. Empty here.
    virtual void continueAnimation(float progress);
    /// Cleans up after the last frame. Empty here.
    virtual void onCleanAfterAnimation();

private:
    /// Kept for the layout the class has always had; no operation uses it.
    float m_reserved;
    float m_animationLength;
    int32_t m_endless;
    int32_t m_endlessStopped;
    int32_t m_running;
    ZoTimer m_timer;
    uint32_t m_animationId;
};
