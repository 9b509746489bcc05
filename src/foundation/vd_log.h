#pragma once

// VDLogServer and VDLogBloc: the logging facade. Log output is switched off in this
// library, so every operation that would show or write text does nothing; the margin
// bookkeeping of nested blocks is kept, so code written against the facade runs
// unchanged.

#include "foundation/export.h"
#include "foundation/vd_string.h"

class NEQBRIDGE_API VDLogServer {
  public:
    // Records the current time of day in s_startTimeVal; the argument is ignored.
    static void init(bool);

    // Inert.
    static void setLogFile(VDString) {}
    static void showLogWindow(bool) {}
    static void enableLogWindow(bool) {}
    static void printLine(VDString, ...) {}
    static void clear() {}

    // The margin becomes n, or 0 when n is negative.
    static void setMarginOffset(int n);
    // margin += n, with no lower clamp.
    static void incrMarginOffset(int n);
    // margin -= n, clamped at 0.
    static void decrMarginOffset(int n);

    static bool m_initialized;
    static int m_curMarginOffset;
    // Two blanks per margin unit, at most 1024; empty at 0 or below.
    static VDString m_curMarginOffsetString;

  private:
    static void setMargin(long long margin);
};

// One nested block of log lines. Started with a title, a block widens the margin by 2
// whatever increment it is given, yet narrows it by that increment at its end: pairs
// with an increment above 2 shrink the margin. Callers depend on this asymmetry.
class NEQBRIDGE_API VDLogBloc {
  public:
    VDLogBloc() = default;
    VDLogBloc(const VDLogBloc&) = delete;
    VDLogBloc& operator=(const VDLogBloc&) = delete;
    ~VDLogBloc() { end(); }

    // Only when inactive: margin += 2, the increment remembered, name kept as the title.
    void start(const VDString& title, const VDString& name, int increment);
    // Only when inactive: margin += increment, no title.
    void start(int increment);
    // Only when active: margin -= the remembered increment (clamped at 0).
    void end();

    bool isActive() const { return m_active; }
    int getIncrement() const { return m_increment; }
    const VDString& getTitle() const { return m_title; }

  private:
    bool m_active = false;
    int m_increment = 0;
    VDString m_title;
};
