#include "led.h"

#define GPIO_DIR (*(volatile unsigned int *)0xE0028008)
#define GPIO_PIN (*(volatile unsigned int *)0xE0028000)
#define LED_BIT (1u << 10)

void led_init(void)
{
    GPIO_DIR |= LED_BIT;
}

void led_toggle(void)
{
    int unused; /* FAKEADS: warning C2870W: variable 'unused' declared but not used */
    GPIO_PIN ^= LED_BIT;
}
