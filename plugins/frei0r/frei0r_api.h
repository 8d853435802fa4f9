/// frei0r.h as hosts mean it: functions of C, which it does not say for C++.
#ifndef VLVK_PLUGINS_FREI0R_FREI0R_API_H
#define VLVK_PLUGINS_FREI0R_FREI0R_API_H

extern "C" {
#include <frei0r.h>
}

#endif
