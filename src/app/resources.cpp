#include "app/resources.h"

#include <QDir>  // Q_INIT_RESOURCE

// The macro declares a function of the global namespace.
static void InitialiseGlobally() { Q_INIT_RESOURCE(resources); }

namespace qdm {

void InitialiseResources() { InitialiseGlobally(); }

}  // namespace qdm
