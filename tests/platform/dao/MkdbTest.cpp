#include "DaoFixture.h"
