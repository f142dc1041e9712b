Option Explicit
Dim g : g = 1
Execute "g = g + 1 : Dim made : made = 5"
WScript.Echo g, Eval("made * 2"), Eval("g = 2")     ' expect: 2 10 True
ExecuteGlobal "Function Late(x) : Late = x & ""!"" : End Function"
WScript.Echo Late("hey")                            ' expect: hey!
Sub Inside(p)
  Dim l : l = 3
  Execute "l = l + p : p = ""set"" : Dim fresh : fresh = 9"
  WScript.Echo l, p, Eval("fresh + l")              ' expect: 8 set 17
  ExecuteGlobal "g = 50"
  Execute "Function Own(y) : Own = y * 3 : End Function"
  WScript.Echo Eval("Own(4)")                       ' expect: 12
End Sub
Dim arg : arg = 5
Inside arg
WScript.Echo arg, g                                 ' expect: set 50
Class K
  Private hidden
  Public Sub Run(code) : hidden = 7 : Execute code : WScript.Echo hidden : End Sub
End Class
Dim o : Set o = New K
o.Run "hidden = hidden * 2"                         ' expect: 14
On Error Resume Next
undefinedName = 1 : WScript.Echo Err.Number         ' expect: 500
Err.Clear : Execute "x x x(" : WScript.Echo Err.Number, Err.Source ' expect: 1025 Microsoft VBScript compilation error
Err.Clear : g = Eval("1 +") : WScript.Echo Err.Number ' expect: 1023
Err.Clear : Execute "g = 1 / 0" : WScript.Echo Err.Number, g ' expect: 11 50
On Error GoTo 0
Sub WithConstant : Const kLocal = 6 : WScript.Echo Eval("kLocal * 7") : End Sub
WithConstant                                        ' expect: 42
