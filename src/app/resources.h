// The icons are compiled into the forms library; a program that links it calls this before its first window.
#pragma once

namespace qdm {

void InitialiseResources();

}  // namespace qdm
