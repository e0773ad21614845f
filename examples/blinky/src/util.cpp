// A small C++ helper: a countdown the main loop could use for its delay.
#include "led.h"

namespace {

class Countdown {
public:
    explicit Countdown(unsigned int start) : left_(start) {}
    bool Tick() { return left_ != 0 && --left_ != 0; }

private:
    unsigned int left_;
};

}  // namespace

extern "C" void delay(unsigned int ticks)
{
    Countdown c(ticks);
    while (c.Tick()) {
    }
}
