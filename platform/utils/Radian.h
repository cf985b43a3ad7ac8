// utils::Radian stands beside utils::Degree, into which it converts.
#pragma once

#include <utils/Degree.h>
