Dim a(3), b, c(), i
WScript.Echo UBound(a), LBound(a), IsArray(c), TypeName(a), VarType(a) ' expect: 3 0 True Variant() 8204
a(1) = 1 : b = a : b(1) = 2 : WScript.Echo a(1), b(1) ' expect: 1 2
ReDim c(1) : c(0) = "x" : ReDim Preserve c(5) : WScript.Echo c(0), UBound(c) ' expect: x 5
ReDim c(2, 1) : c(2, 1) = 7 : ReDim Preserve c(2, 3) : WScript.Echo c(2, 1), UBound(c, 2) ' expect: 7 3
ReDim c(2) : WScript.Echo IsEmpty(c(0))             ' expect: True
Erase a : WScript.Echo IsEmpty(a(1)), UBound(a)     ' expect: True 3
On Error Resume Next
Erase c : i = UBound(c) : WScript.Echo Err.Number   ' expect: 9
Err.Clear : ReDim a(5) : WScript.Echo Err.Number    ' expect: 10
Err.Clear : i = a(4) : WScript.Echo Err.Number, Err.Description ' expect: 9 Subscript out of range
Err.Clear : i = a(1, 1) : WScript.Echo Err.Number   ' expect: 9
ReDim c(2, 2) : Err.Clear : ReDim Preserve c(3, 2) : WScript.Echo Err.Number ' expect: 9
Err.Clear : a = 5 : WScript.Echo Err.Number         ' expect: 13
On Error Goto 0
Dim n : n = Array(1, Array(2, 3)) : n(1)(0) = 9 : WScript.Echo n(1)(0) ' expect: 9
b = Array() : WScript.Echo UBound(b)                ' expect: -1
Sub Fill(x) : ReDim x(2) : x(2) = "filled" : End Sub
Dim f : Fill f : WScript.Echo f(2)                  ' expect: filled
Sub Lock(x) : On Error Resume Next : ReDim f(9) : WScript.Echo Err.Number : x = 1 : End Sub
Lock f(0) : WScript.Echo f(0)
' expect: 10
' expect: 1
a(1.5) = "even" : WScript.Echo a(2)                 ' expect: even
Class Holder : Public list(2) : Public free : End Class
Dim h : Set h = New Holder : h.list(1) = 4 : h.free = Array(1, 2) : h.free(1) = 8
WScript.Echo h.list(1), h.free(1)                   ' expect: 4 8
For Each i In Array(3, 4) : b = i : Next : WScript.Echo b ' expect: 4
