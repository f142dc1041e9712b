#include "platform/vbscript/EngineFrame.h"
#include "platform/vbscript/Operators.h"

#include <algorithm>
#include <cmath>

namespace vbs {

namespace {

inline bool isLiteral(Operand operand) { return (operand & ~place::kIndexMask) == place::kConstant; }

inline void setSum(Value &target, Type wider, qint64 result)
{
    if (wider == Type::Integer && result == qint16(result))
        target.setWhole(Type::Integer, result);
    else if (result == qint32(result))
        target.setWhole(Type::Long, result);
    else
        target.setReal(Type::Double, double(result));
}

inline Type wider(const Value &a, const Value &b) { return std::max(a.type(), b.type()); }

inline bool isReal(const Value &value) { return value.is(Type::Double); }

inline bool bothWhole(const Value &a, const Value &b) { return a.isWhole() && b.isWhole(); }

/** Numbers of the usual kinds without a detour; false: the slow way must do it. */
template <class WholeOp, class RealOp>
inline bool quickArithmetic(Value &target, const Value &a, const Value &b, WholeOp whole, RealOp real)
{
    if (!target.isSimple())
        return false;
    if (bothWhole(a, b)) {
        setSum(target, wider(a, b), whole(a.whole(), b.whole()));
        return true;
    }
    const bool realA = isReal(a);
    const bool realB = isReal(b);
    if ((!realA && !a.isWhole()) || (!realB && !b.isWhole()))
        return false;
    const double result = real(realA ? a.realPart() : double(a.whole()), realB ? b.realPart() : double(b.whole()));
    if (!std::isfinite(result))
        return false;
    target.setReal(Type::Double, result);
    return true;
}

template <class Compare>
inline bool quickCompare(const Value &a, const Value &b, Compare compare, bool &result)
{
    if (bothWhole(a, b)) {
        result = compare(a.whole(), b.whole());
        return true;
    }
    const bool realA = isReal(a);
    const bool realB = isReal(b);
    if ((!realA && !a.isWhole()) || (!realB && !b.isWhole()))
        return false;
    result = compare(realA ? a.realPart() : double(a.whole()), realB ? b.realPart() : double(b.whole()));
    return true;
}

}

// The same few lines for each operator, where only the operator differs.
#define KAVRO_ARITHMETIC(NAME, WHOLE, REAL)                                                                           \
    case Op::NAME: {                                                                                                  \
        const auto whole = [](qint64 x, qint64 y) { return WHOLE; };                                                  \
        const auto real = [](double x, double y) { return REAL; };                                                    \
        if (!quickArithmetic(at(i.a), at(i.b), at(i.c), whole, real))                                                 \
            slowBinary(i);                                                                                            \
        break;                                                                                                        \
    }
#define KAVRO_COMPARISON(NAME, OPERATOR)                                                                              \
    case Op::NAME: {                                                                                                  \
        bool result = false;                                                                                          \
        Value &target = at(i.a);                                                                                      \
        if (target.isSimple()                                                                                         \
            && quickCompare(at(i.b), at(i.c), [](auto x, auto y) { return x OPERATOR y; }, result))                   \
            target.setWhole(Type::Boolean, result ? -1 : 0);                                                          \
        else                                                                                                          \
            slowBinary(i);                                                                                            \
        break;                                                                                                        \
    }                                                                                                                 \
    case Op::Unless##NAME: {                                                                                          \
        bool result = false;                                                                                          \
        if (!quickCompare(at(i.b), at(i.c), [](auto x, auto y) { return x OPERATOR y; }, result))                     \
            result = slowCompare(i);                                                                                  \
        if (!result)                                                                                                  \
            next = frame->code->instructions.data() + i.d;                                                            \
        break;                                                                                                        \
    }                                                                                                                 \
    case Op::When##NAME: {                                                                                            \
        bool result = false;                                                                                          \
        if (!quickCompare(at(i.b), at(i.c), [](auto x, auto y) { return x OPERATOR y; }, result))                     \
            result = slowCompare(i);                                                                                  \
        if (result)                                                                                                   \
            next = frame->code->instructions.data() + i.d;                                                            \
        break;                                                                                                        \
    }

/**
 * The loop: runs until the procedure that native code called has ended. Common cases of numbers are handled here,
 * everything else in functions that may throw.
 */
void Engine::loop()
{
    Frame *frame = nullptr;
    const Instruction *pc = nullptr;
    const auto enter = [&] {
        frame = &m_frames[m_frameCount - 1];
        pc = frame->pc;
        m_place[0] = frame->registers;
        m_place[1] = frame->code->constants.data();
        m_place[2] = m_globals;
        m_place[3] = frame->me.is(Type::Object) ? frame->instance()->fields() : nullptr;
    };
    enter();

    for (;;) {
        const Instruction &i = *pc;
        frame->pc = pc;
        const Instruction *next = pc + 1;
        switch (i.op) {
        case Op::Let: {
            Value &target = at(i.a);
            const Value &source = at(i.b);
            if (target.isSimple() && source.isSimple())
                target.copySimple(source);
            else
                slowLet(i);
            break;
        }
        case Op::Copy: {
            Value &target = at(i.a);
            const Value &source = at(i.b);
            if (target.isSimple() && source.isSimple())
                target.copySimple(source);
            else
                store(i.a, take(i.b));
            break;
        }
        case Op::Set: setObject(i); break;
        case Op::Reference: {
            Value &source = at(i.b);
            at(i.a) = source.isReference() ? source : Value::reference(&source);
            break;
        }
        KAVRO_ARITHMETIC(Add, x + y, x + y)
        KAVRO_ARITHMETIC(Subtract, x - y, x - y)
        KAVRO_ARITHMETIC(Multiply, x * y, x * y)
        KAVRO_COMPARISON(Equal, ==)
        KAVRO_COMPARISON(NotEqual, !=)
        KAVRO_COMPARISON(Less, <)
        KAVRO_COMPARISON(Greater, >)
        KAVRO_COMPARISON(LessEqual, <=)
        KAVRO_COMPARISON(GreaterEqual, >=)
        case Op::Modulo: case Op::IntDivide: {
            const Value &a = at(i.b);
            const Value &b = at(i.c);
            Value &target = at(i.a);
            if (target.isSimple() && bothWhole(a, b) && b.whole() > 0)
                setSum(target, wider(a, b), i.op == Op::Modulo ? a.whole() % b.whole() : a.whole() / b.whole());
            else
                slowBinary(i);
            break;
        }
        case Op::Divide: case Op::Power: case Op::Concat: case Op::And: case Op::Or: case Op::Xor: case Op::Eqv:
        case Op::Imp: case Op::Negate: case Op::Identity: case Op::Not:
            slowBinary(i);
            break;
        case Op::Is: isOperator(i); break;
        case Op::Append: appendText(i); break;
        case Op::Jump: next = frame->code->instructions.data() + i.d; break;
        case Op::LoopJump:
            next = frame->code->instructions.data() + i.d;
            if (--m_budget <= 0)
                poll();
            break;
        case Op::JumpFalse: case Op::JumpTrue: {
            const Value &value = at(i.b);
            const bool result = value.is(Type::Boolean) ? value.whole() != 0 : truth(i.b);
            if (result == (i.op == Op::JumpTrue))
                next = frame->code->instructions.data() + i.d;
            break;
        }
        case Op::ForPrepare: {
            bool goIn = false;
            forPrepare(i, goIn);
            if (!goIn)
                next = frame->code->instructions.data() + i.d;
            break;
        }
        case Op::ForNext: {
            Value &variable = at(i.a);
            const Value *bounds = &at(i.b);
            bool again = false;
            if (variable.isWhole() && bothWhole(bounds[0], bounds[1])) {
                const qint64 step = bounds[1].whole();
                const qint64 value = variable.whole() + step;
                setSum(variable, wider(variable, bounds[1]), value);
                again = step >= 0 ? value <= bounds[0].whole() : value >= bounds[0].whole();
            } else {
                again = forNextSlow(i);
            }
            if (again)
                next = frame->code->instructions.data() + i.d;
            if (--m_budget <= 0)
                poll();
            break;
        }
        case Op::EachStart: eachStart(i); break;
        case Op::EachNext:
            if (!eachNext(i))
                next = frame->code->instructions.data() + i.d;
            break;
        case Op::Call: case Op::CallValue: case Op::GetMember: case Op::CallMember: case Op::PutMemberLet:
        case Op::PutMemberSet: case Op::Index1: case Op::ReadImplicit: {
            const size_t before = m_frameCount;
            if (--m_budget <= 0)
                poll();
            if (i.op == Op::Index1)
                index1(i);
            else if (i.op == Op::Call)
                callProcedureByName(i);
            else if (i.op == Op::CallValue)
                callValue(i);
            else if (i.op == Op::ReadImplicit)
                readImplicit(i);
            else if (i.op == Op::GetMember || i.op == Op::CallMember)
                getMember(i);
            else
                putMember(i, i.op == Op::PutMemberSet);
            if (m_frameCount > before) {
                enter();
                continue;
            }
            break;
        }
        case Op::CallIntrinsic: callIntrinsic(i); break;
        case Op::ElementReference: elementReference(i); break;
        case Op::Store1: store1(i); break;
        case Op::PutIndexLet: putIndex(i, false); break;
        case Op::PutIndexSet: putIndex(i, true); break;
        case Op::New: newObject(i); break;
        case Op::Me: at(i.a) = frame->me; break;
        case Op::Clear: at(i.a) = Value(); break;
        case Op::RequireObject: objectAt(i.b); break;
        case Op::DimArray: dimArray(i); break;
        case Op::ReDim: reDim(i); break;
        case Op::Erase: erase(i); break;
        case Op::OnErrorNext: case Op::OnErrorZero:
            frame->resumeNext = i.op == Op::OnErrorNext;
            m_err = {};
            break;
        case Op::Execute: case Op::ExecuteGlobal: case Op::Eval:
            if (--m_budget <= 0)
                poll();
            if (i.op == Op::Eval)
                eval(i);
            else
                execute(i, i.op == Op::ExecuteGlobal);
            enter();
            continue;
        case Op::Randomize: randomize(i); break;
        case Op::CheckDefined: checkDefined(i); break;
        case Op::DeclareGlobal: declareGlobal(i); break;
        case Op::RaiseError:
            throw ScriptError(i.b, i.d >= 0 ? frame->code->names[size_t(i.d)]->text : QString());
        case Op::Return: {
            if (i.n)
                m_err = {};
            Value value;
            if (frame->code->result >= 0)
                value = std::move(frame->registers[frame->code->result].resolved());
            const bool bottom = frame->isBottom;
            const Operand target = frame->target;
            popFrame();
            if (bottom) {
                m_result = std::move(value);
                return;
            }
            enter();
            if (target != place::kNone) {
                Value &place = at(target);
                if (place.isSimple() && value.isSimple())
                    place.copySimple(value);
                else
                    store(target, std::move(value));
            }
            next = pc + 1;
            break;
        }
        }
        pc = next;
    }
}

#undef KAVRO_ARITHMETIC
#undef KAVRO_COMPARISON

/** A value for keeping: moved out of an intermediate register, copied from anywhere else. */
Value Engine::take(Operand operand)
{
    Value &place = at(operand);
    const Frame &frame = m_frames[m_frameCount - 1];
    const bool temporary = operand < place::kConstant && operand >= frame.code->firstTemporary;
    Value result = place.isReference() ? Value(place.resolved()) : temporary ? std::move(place) : Value(place);
    if (temporary && place.isReference())
        place = Value();
    if (result.is(Type::Array))
        result.setFixedArray(false);
    return result;
}

/** Intermediate results are used once; objects must not live on in them. */
void Engine::dropTemporary(Operand operand)
{
    if (operand >= place::kConstant || operand < m_frames[m_frameCount - 1].code->firstTemporary)
        return;
    Value &value = at(operand);
    if (!value.isSimple())
        value = Value();
}

void Engine::dropArguments(Operand first, int count)
{
    for (int k = 0; k < count; ++k) {
        Value &value = at(Operand(first + k));
        if (!value.isSimple())
            value = Value();
    }
}

void Engine::store(Operand target, Value value)
{
    Value &place = at(target);
    if (place.isReference() && target < m_frames[m_frameCount - 1].code->firstTemporary)
        place.resolved() = std::move(value);
    else
        place = std::move(value);
}

void Engine::slowBinary(const Instruction &i)
{
    const auto operand = [this](Operand which) {
        const Value &value = at(which).resolved();
        return value.is(Type::Object) ? plain(value) : value;
    };
    const Value a = operand(i.b);
    Value result;
    if (i.op == Op::Negate || i.op == Op::Identity || i.op == Op::Not) {
        result = unaryOperation(*this, i.op, a);
    } else {
        const Value b = operand(i.c);
        if (i.op >= Op::Equal && i.op <= Op::GreaterEqual) {
            const int order = compareValues(*this, a, isLiteral(i.b), b, isLiteral(i.c));
            result = order == kUnordered ? Value::null() : Value::boolean(holds(i.op, order));
        } else {
            result = binaryOperation(*this, i.op, a, b);
        }
        dropTemporary(i.c);
    }
    dropTemporary(i.b);
    store(i.a, std::move(result));
}

bool Engine::slowCompare(const Instruction &i)
{
    const auto operand = [this](Operand which) {
        const Value &value = at(which).resolved();
        return value.is(Type::Object) ? plain(value) : value;
    };
    const Value a = operand(i.b);
    const Value b = operand(i.c);
    const int order = compareValues(*this, a, isLiteral(i.b), b, isLiteral(i.c));
    dropTemporary(i.b);
    dropTemporary(i.c);
    return holds(i.op, order);
}

/** Null counts as False in conditions. */
bool Engine::truth(Operand operand)
{
    const Value value = plain(at(operand));
    dropTemporary(operand);
    return !value.is(Type::Null) && toBoolean(*this, value);
}

void Engine::slowLet(const Instruction &i)
{
    Value value = take(i.b);
    if (value.is(Type::Object))
        value = plain(value);
    if (at(i.a).resolved().isFixedArray())
        throw ScriptError(err::kTypeMismatch, operandName(i.a));
    store(i.a, std::move(value));
}

void Engine::setObject(const Instruction &i)
{
    Value value = take(i.b);
    if (!value.is(Type::Object))
        throw ScriptError(err::kObjectRequired, operandName(i.b));
    store(i.a, std::move(value));
}

void Engine::appendText(const Instruction &i)
{
    // b is a copy of the target if anything ran meanwhile; while both share one text, nobody has changed it.
    if (i.b != i.a) {
        Value &target = at(i.a).resolved();
        Value &before = at(i.b);
        const bool same = target.is(Type::String) && before.is(Type::String)
            && target.view().utf16() == before.view().utf16();
        if (!same) {
            Instruction plainConcat = i;
            plainConcat.op = Op::Concat;
            return slowBinary(plainConcat);
        }
        before = Value();
    }
    Value added = at(i.c).resolved();
    if (added.is(Type::Object))
        added = plain(added);
    Value &text = at(i.a).resolved();
    if (!text.is(Type::String)) {
        Instruction plainConcat = i;
        plainConcat.op = Op::Concat;
        plainConcat.b = i.a;
        return slowBinary(plainConcat);
    }
    if (added.is(Type::Null))
        return;
    const QString converted = added.is(Type::String) ? QString() : toText(*this, added);
    const QStringView view = added.is(Type::String) ? added.view() : QStringView(converted);
    dropTemporary(i.c);
    text.append(view);
    spend(1 + view.size() / 64);
}

void Engine::isOperator(const Instruction &i)
{
    const Value &a = at(i.b).resolved();
    const Value &b = at(i.c).resolved();
    if (!a.is(Type::Object) || !b.is(Type::Object))
        throw ScriptError(err::kObjectRequired, operandName(a.is(Type::Object) ? i.c : i.b));
    const bool same = a.object() == b.object();
    dropTemporary(i.b);
    dropTemporary(i.c);
    store(i.a, Value::boolean(same));
}

void Engine::forPrepare(const Instruction &i, bool &enter)
{
    const auto number = [this](const Value &value) {
        const Value result = plain(value);
        if (result.is(Type::String) || result.is(Type::Boolean) || result.is(Type::Empty))
            return unaryOperation(*this, Op::Identity, result);
        toReal(*this, result);
        return result;
    };
    Value *bounds = &at(i.b);
    // The limit stays Empty until everything is known: Next then tells a loop that was never started.
    const Value limit = std::move(bounds[0]);
    bounds[0] = Value();
    const Value end = number(limit);
    const Value step = number(bounds[1]);
    Value start = number(at(i.c));
    dropTemporary(i.c);
    const int order = compareValues(*this, start, false, end, false);
    enter = toReal(*this, step) >= 0 ? order <= 0 : order >= 0;
    store(i.a, std::move(start));
    at(i.b) = end;
    (&at(i.b))[1] = step;
}

bool Engine::forNextSlow(const Instruction &i)
{
    const Value *bounds = &at(i.b);
    if (bounds[0].is(Type::Empty))
        throw ScriptError(err::kForNotInitialized);
    const Value variable = plain(at(i.a));
    const Value sum = binaryOperation(*this, Op::Add, variable, bounds[1]);
    store(i.a, sum);
    const int order = compareValues(*this, sum, false, bounds[0], false);
    return toReal(*this, bounds[1]) >= 0 ? order <= 0 : order >= 0 && order != kUnordered;
}

}
