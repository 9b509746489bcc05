#include "foundation/vd_log.h"

#include "foundation/vd_time_start.h"

#include <climits>

bool VDLogServer::m_initialized = false;
int VDLogServer::m_curMarginOffset = 0;
VDString VDLogServer::m_curMarginOffsetString;

void VDLogServer::init(bool) {
    m_initialized = true;
    ::gettimeofday(&s_startTimeVal, nullptr);
}

// The margin text is two blanks per unit. The margin is capped so that this length fits
// an int, and arithmetic on it never overflows.
void VDLogServer::setMargin(long long margin) {
    if (margin > INT_MAX / 2) margin = INT_MAX / 2;
    if (margin < INT_MIN) margin = INT_MIN;
    m_curMarginOffset = static_cast<int>(margin);
    m_curMarginOffsetString.create(2 * m_curMarginOffset, ' ');
}

void VDLogServer::setMarginOffset(int n) {
    setMargin(n < 0 ? 0 : n);
}

void VDLogServer::incrMarginOffset(int n) {
    setMargin(static_cast<long long>(m_curMarginOffset) + n);
}

void VDLogServer::decrMarginOffset(int n) {
    const long long margin = static_cast<long long>(m_curMarginOffset) - n;
    setMargin(margin < 0 ? 0 : margin);
}

void VDLogBloc::start(const VDString& title, const VDString& name, int increment) {
    if (m_active) return;
    // A title line would be printed here; output is off.
    (void)title;
    VDLogServer::incrMarginOffset(2);
    m_active = true;
    m_increment = increment;
    m_title = name;
}

void VDLogBloc::start(int increment) {
    if (m_active) return;
    VDLogServer::incrMarginOffset(increment);
    m_active = true;
    m_increment = increment;
    m_title.clear();
}

void VDLogBloc::end() {
    if (!m_active) return;
    VDLogServer::decrMarginOffset(m_increment);
    // A closing line with the title would be printed here; output is off.
    m_active = false;
    m_increment = 0;
    m_title.clear();
}
