Option Explicit
Dim g, o, r : g = 1
On Error Resume Next
undecl = 5 : WScript.Echo Err.Number, Err.Description : Err.Clear ' expect: 500 Variable is undefined
g = undecl2 : WScript.Echo Err.Number, g : Err.Clear ' expect: 500 1
For Each ue In Array(1) : Next : WScript.Echo Err.Number : Err.Clear ' expect: 92
For uf = 1 To 2 : Next : WScript.Echo Err.Number : Err.Clear ' expect: 92
noSub 1 : WScript.Echo Err.Number, Err.Description : Err.Clear ' expect: 500 Variable is undefined
Call noSub2(1) : WScript.Echo Err.Number : Err.Clear ' expect: 500
Set us = Nothing : WScript.Echo Err.Number : Err.Clear ' expect: 500
ReDim rd(2) : rd(1) = 3 : WScript.Echo rd(1), Err.Number : Err.Clear ' expect: 3 0
Sub S1 : Dim l : l = 2 : ReDim q(1) : q(0) = l : WScript.Echo q(0) : und = 1 : End Sub
S1 : WScript.Echo Err.Number : Err.Clear ' expect: 2
' expect: 500
Execute "ex = 5" : WScript.Echo Err.Number : Err.Clear ' expect: 500
Execute "Dim ex2 : ex2 = 5" : WScript.Echo Err.Number, ex2 : Err.Clear ' expect: 0 5
ExecuteGlobal "Dim eg : eg = 6" : WScript.Echo eg, Err.Number : Err.Clear ' expect: 6 0
g = Eval("undecl3") : WScript.Echo Err.Number : Err.Clear ' expect: 500
g = Eval("g + 1") : WScript.Echo g ' expect: 2
Class K : Private m : Public Sub T : m = 1 : mm = 2 : End Sub : End Class
Set o = New K : o.T : WScript.Echo Err.Number : Err.Clear ' expect: 500
g = late : WScript.Echo IsEmpty(g), Err.Number : Dim late ' expect: True 0
Function F : F = 1 : End Function : WScript.Echo F, Err.Number ' expect: 1 0
WScript.Echo vbRed, Len("abc"), Err.Number ' expect: 255 3 0
g = 5 : Sub Sh : Dim g : g = 6 : Execute "g = g + 1" : WScript.Echo g, Eval("g * 2") : ExecuteGlobal "g = g + 100" : WScript.Echo g : End Sub : Sh : WScript.Echo g
' expect: 7 14
' expect: 7
' expect: 105
Sub Ev : Dim a(2) : a(1) = 4 : WScript.Echo Eval("a(1) + 1"), Eval("UBound(a)") : Execute "a(2) = 9" : WScript.Echo a(2) : End Sub : Ev ' expect: 5 2
' expect: 9
Sub Pm(p, ByVal q) : Execute "p = p & ""!"" : q = q & ""?""" : WScript.Echo p, q : End Sub : g = "x" : r = "y" : Pm g, r : WScript.Echo g, r ' expect: x! y?
' expect: x! y
Function Fv : Execute "Fv = 7" : End Function : WScript.Echo Fv ' expect: 7
WScript.Echo Eval("g = ""x!"""), Eval("1 = 2") ' expect: True False
Sub DefIn : Execute "Sub Inner : WScript.Echo ""inner"" : End Sub" : Execute "Inner" : End Sub : DefIn : Inner : WScript.Echo Err.Number : Err.Clear ' expect: inner
' expect: 500
ExecuteGlobal "Sub Outer1 : WScript.Echo ""outer"" : End Sub" : Outer1 ' expect: outer
ExecuteGlobal "Class Dyn : Public V : End Class" : Set o = Eval("New Dyn") : WScript.Echo TypeName(o) ' expect: Dyn
Execute "Const ck = 4" : WScript.Echo ck ' expect: 4
Execute "If True Then" & vbLf & "g = 3" & vbLf & "End If" : WScript.Echo g ' expect: 3
ExecuteGlobal "Option Explicit" & vbLf & "g = 4" : WScript.Echo g ' expect: 4
Class Me1 : Public V : Public Sub T : Execute "V = 5 : Me.V = Me.V + 1" : WScript.Echo V, Eval("V + 1"), Eval("Me.V") : End Sub : End Class
Set o = New Me1 : o.T ' expect: 6 7 6
WScript.Echo TypeName(Eval("Nothing")), TypeName(Eval("Array(1)")), Eval("""a"" & 1") ' expect: Nothing Variant() a1
Set o = Eval("New Me1") : WScript.Echo TypeName(o) ' expect: Me1
Eval "g = 9" : WScript.Echo g ' expect: 4
Dim i : For i = 1 To 2 : Execute "g = g + i" : Next : WScript.Echo g ' expect: 7
Err.Clear : Execute 5 : WScript.Echo Err.Number : Err.Clear ' expect: 1024
Execute Null : WScript.Echo Err.Number : Err.Clear ' expect: 94
Execute "" : WScript.Echo Err.Number ' expect: 0
