#pragma once

#include "platform/vbscript/Value.h"

#include <QString>

namespace vbs {

class Args;
class Engine;

/** One intrinsic function. */
struct Intrinsic
{
    const char *name;
    int minArgs;
    int maxArgs;
    Value (*run)(Engine &engine, Args &args);
};

/** Number of an intrinsic function by its folded name, -1 when there is none. */
int findIntrinsic(const QString &folded);
const Intrinsic &intrinsicAt(int index);
/** A predefined constant (vbCrLf …); nullptr when there is none. */
const Value *findIntrinsicConstant(const QString &folded);

}
