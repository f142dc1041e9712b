#include "platform/vbscript/IntrinsicTables.h"

#include <QHash>
#include <vector>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

const std::vector<Intrinsic> &allFunctions()
{
    static const std::vector<Intrinsic> functions = [] {
        std::vector<Intrinsic> all;
        for (const auto table : { conversionFunctions(), stringFunctions(), formatFunctions(), numberFunctions(),
                 dateFunctions(), otherFunctions() })
            all.insert(all.end(), table.begin(), table.end());
        return all;
    }();
    return functions;
}

struct NumberConstant
{
    const char *name;
    qint32 value;
};

constexpr NumberConstant kNumbers[] = {
    { "vbBinaryCompare", 0 }, { "vbTextCompare", 1 }, { "vbDatabaseCompare", 2 }, { "vbTrue", -1 }, { "vbFalse", 0 },
    { "vbUseDefault", -2 }, { "vbEmpty", 0 }, { "vbNull", 1 }, { "vbInteger", 2 }, { "vbLong", 3 },
    { "vbSingle", 4 }, { "vbDouble", 5 }, { "vbCurrency", 6 }, { "vbDate", 7 }, { "vbString", 8 },
    { "vbObject", 9 }, { "vbError", 10 }, { "vbBoolean", 11 }, { "vbVariant", 12 }, { "vbDataObject", 13 },
    { "vbDecimal", 14 }, { "vbByte", 17 }, { "vbArray", 8192 }, { "vbSunday", 1 }, { "vbMonday", 2 },
    { "vbTuesday", 3 }, { "vbWednesday", 4 }, { "vbThursday", 5 }, { "vbFriday", 6 }, { "vbSaturday", 7 },
    { "vbUseSystem", 0 }, { "vbUseSystemDayOfWeek", 0 }, { "vbFirstJan1", 1 }, { "vbFirstFourDays", 2 },
    { "vbFirstFullWeek", 3 }, { "vbGeneralDate", 0 }, { "vbLongDate", 1 }, { "vbShortDate", 2 },
    { "vbLongTime", 3 }, { "vbShortTime", 4 }, { "vbOKOnly", 0 }, { "vbOKCancel", 1 },
    { "vbAbortRetryIgnore", 2 }, { "vbYesNoCancel", 3 }, { "vbYesNo", 4 }, { "vbRetryCancel", 5 },
    { "vbCritical", 16 }, { "vbQuestion", 32 }, { "vbExclamation", 48 }, { "vbInformation", 64 },
    { "vbDefaultButton1", 0 }, { "vbDefaultButton2", 256 }, { "vbDefaultButton3", 512 },
    { "vbDefaultButton4", 768 }, { "vbApplicationModal", 0 }, { "vbSystemModal", 4096 },
    { "vbMsgBoxHelpButton", 16384 }, { "vbMsgBoxSetForeground", 65536 }, { "vbMsgBoxRight", 524288 },
    { "vbMsgBoxRtlReading", 1048576 }, { "vbOK", 1 }, { "vbCancel", 2 }, { "vbAbort", 3 }, { "vbRetry", 4 },
    { "vbIgnore", 5 }, { "vbYes", 6 }, { "vbNo", 7 }, { "vbBlack", 0 }, { "vbRed", 0xff }, { "vbGreen", 0xff00 },
    { "vbYellow", 0xffff }, { "vbBlue", 0xff0000 }, { "vbMagenta", 0xff00ff }, { "vbCyan", 0xffff00 },
    { "vbWhite", 0xffffff }, { "vbObjectError", -2147221504 },
};

struct TextConstant
{
    const char *name;
    const char *value;
    int length;
};

constexpr TextConstant kTexts[] = {
    { "vbCr", "\r", 1 }, { "vbLf", "\n", 1 }, { "vbCrLf", "\r\n", 2 }, { "vbNewLine", "\r\n", 2 },
    { "vbTab", "\t", 1 }, { "vbFormFeed", "\f", 1 }, { "vbVerticalTab", "\v", 1 }, { "vbNullChar", "\0", 1 },
    { "vbNullString", "", 0 },
};

}

int findIntrinsic(const QString &folded)
{
    static const QHash<QString, int> index = [] {
        QHash<QString, int> names;
        for (const Intrinsic &function : allFunctions())
            names.insert(QString::fromLatin1(function.name).toCaseFolded(), int(names.size()));
        return names;
    }();
    return index.value(folded, -1);
}

const Intrinsic &intrinsicAt(int index) { return allFunctions()[size_t(index)]; }

const Value *findIntrinsicConstant(const QString &folded)
{
    static const QHash<QString, Value> constants = [] {
        QHash<QString, Value> values;
        for (const NumberConstant &row : kNumbers)
            values.insert(QString::fromLatin1(row.name).toCaseFolded(), Value::number(row.value));
        for (const TextConstant &row : kTexts)
            values.insert(QString::fromLatin1(row.name).toCaseFolded(),
                Value::string(QString::fromLatin1(row.value, row.length)));
        return values;
    }();
    const auto found = constants.constFind(folded);
    return found == constants.constEnd() ? nullptr : &*found;
}

Qt::CaseSensitivity comparisonMode(Args &args, int index)
{
    const int mode = args.integer(index, 0);
    if (mode < 0 || mode > 2)
        throw ScriptError(err::kInvalidCall);
    return mode == 0 ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

}
