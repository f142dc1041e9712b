WScript.Echo Int(-8.4), Fix(-8.4), Int(8.9), Abs(-3), TypeName(Abs(-3)), Sgn(-2.5), Sgn(0) ' expect: -9 -8 8 3 Integer -1 0
WScript.Echo Round(2.5), Round(3.5), Round(-1.5), Round(2.345, 2), Round(1.005, 2), TypeName(Round(2.5)) ' expect: 2 4 -2 2.34 1 Double
WScript.Echo CInt(0.5), CInt(1.5), CInt(-2.5), CLng("1e3"), CByte(255), CBool("true"), CBool(2), CDbl("1.5") ' expect: 0 2 -2 1000 255 True True 1.5
WScript.Echo Sqr(16), Exp(0), Log(1), Sin(0), Cos(0), Atn(1) * 4, Tan(0) ' expect: 4 1 0 0 1 3.14159265358979 0
WScript.Echo Rnd, Rnd, Rnd(0), Rnd(1), Rnd ' expect: 0.7055475 0.533424 0.533424 0.5795186 0.2895625
Dim a, b : Rnd -1 : Randomize 42 : a = Rnd : Rnd -1 : Randomize 42 : b = Rnd : WScript.Echo a = b, a >= 0 And a < 1 ' expect: True True
WScript.Echo FormatNumber(1234567.891), FormatNumber(0.5, 1, 0), FormatNumber(-5, 0, -1, -1), FormatNumber(2.345, 2), FormatNumber(1234.5, 1, -2, -2, 0)
' expect: 1,234,567.89 .5 (5) 2.35 1234.5
WScript.Echo FormatCurrency(1234.5), FormatCurrency(-1, 0), FormatPercent(0.256), FormatPercent(1, 0) ' expect: $1,234.50 ($1) 25.60% 100%
WScript.Echo IsNumeric("12"), IsNumeric("&H1F"), IsNumeric("1e3"), IsNumeric(""), IsNumeric(Null), IsNumeric(Empty), IsNumeric("abc"), IsNumeric(Date)
' expect: True True True False False True False False
WScript.Echo RGB(255, 0, 0), RGB(1, 2, 300), ScriptEngine, vbObjectError, vbCrLf = Chr(13) & Chr(10) ' expect: 255 16712193 VBScript -2147221504 True
WScript.Echo TypeName(CCur(1)), TypeName(CSng(1)), TypeName(CDate(1)), TypeName(Nothing), TypeName(Null), TypeName(1.5), VarType("x"), VarType(Nothing), VarType(Array(1))
' expect: Currency Single Date Nothing Null Double 8 9 8204
WScript.Echo CStr(1.10), CStr(True), CStr(1/3), CStr(CSng(1/3)), CStr(-0.5), CStr(100000000000000000000) ' expect: 1.1 True 0.333333333333333 0.3333333 -0.5 1E+20
