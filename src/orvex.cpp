#include "orvex.h"
