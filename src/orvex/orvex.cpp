#include "orvex/orvex.h"
