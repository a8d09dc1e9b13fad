#pragma once

#include "CupsPrinting.h"

/// Sides that a job of PDF and PostScript files comes to, by its pages, copies and pages per sheet; 0 when a
/// file does not tell its pages, as text does not.
int sidesOfJob(const PrintJob& job);
