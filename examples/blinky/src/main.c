/* Blinks the board's LED: the smallest useful program for an ARM7 board. */
#include "led.h"

int main(void)
{
    unsigned int i;
    led_init();
    for (;;) {
        led_toggle();
        for (i = 0; i < 100000u; ++i) {
        }
    }
}
