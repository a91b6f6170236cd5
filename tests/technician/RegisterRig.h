#pragma once

#include "LineScript.h"
#include "RecordingOperator.h"
#include "link/Clock.h"
#include "link/EcrLink.h"
#include "link/VirtualLinePort.h"
#include "sim/VirtualEcr.h"

// The virtual register on a virtual line, in virtual time, taking the given time over every answer; the tap
// keeps the records the PC wrote.
struct RegisterRig {
    explicit RegisterRig(qint64 answerDelayMs = 5) : ecr({{}, {}, {}, 0, answerDelayMs, false, {}}) { port.open("virtual", 9600); }
    kelm::sim::VirtualEcr ecr;
    WireTap tap{ecr};
    kelm::VirtualClock clock;
    kelm::VirtualLinePort port{tap, clock};
    kelm::EcrLink link{port, clock};
    RecordingOperator op;
};
