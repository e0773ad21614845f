#ifndef LED_H
#define LED_H

void led_init(void);
void led_toggle(void);

#ifdef __cplusplus
extern "C"
#endif
void delay(unsigned int ticks);

#endif
