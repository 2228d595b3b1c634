#pragma once

// expat declares its limits on entities only to those who say that it was built with DTD support.
#ifndef XML_DTD
#define XML_DTD
#endif
#include <expat.h>

#if XML_MAJOR_VERSION < 2 || (XML_MAJOR_VERSION == 2 && XML_MINOR_VERSION < 4)
#error "expat before 2.4 has no limits on entity expansion"
#endif
