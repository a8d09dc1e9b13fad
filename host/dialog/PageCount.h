#pragma once

#include "CupsPrinting.h"

/// Sides that a job of PDF files comes to, by its pages, copies and pages per sheet; 0 when a file's pages
/// cannot be counted.
int sidesOfJob(const PrintJob& job);
