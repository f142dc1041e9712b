#include "platform/vbscript/ObjectFactory.h"

namespace vbs {

void registerAdministratorObjects() { }

}
