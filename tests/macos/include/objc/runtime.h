#pragma once

#include <Cocoa/Cocoa.h>

extern "C" BOOL sel_isEqual(SEL, SEL);
