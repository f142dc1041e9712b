On Error Resume Next
Dim a(2), n, o, f : n = Null : Set o = Nothing
Class K : Private p : Public Property Get R : R = 1 : End Property : Public Property Let W(x) : End Property : End Class
Dim k1 : Set k1 = New K
Const c = 1
Sub S(x) : End Sub
Sub Show(label) : WScript.Echo label, Err.Number : Err.Clear : End Sub
f = Mid("a", 0) : Show "5"                 ' expect: 5 5
f = CInt(40000) : Show "6"                 ' expect: 6 6
f = 2147483648 \ 1 : Show "6"              ' expect: 6 6
f = 0 / 0 : Show "6"                       ' expect: 6 6
f = a(3) : Show "9"                        ' expect: 9 9
ReDim a(1) : Show "10"                     ' expect: 10 10
f = 1 / 0 : Show "11"                      ' expect: 11 11
f = 1 Mod 0 : Show "11"                    ' expect: 11 11
f = "a" * 1 : Show "13"                    ' expect: 13 13
nothingHere 1 : Show "13"                  ' expect: 13 13
f = o.x : Show "91"                        ' expect: 91 91
f = CStr(n) : Show "94"                    ' expect: 94 94
f = f.x : Show "424"                       ' expect: 424 424
Set f = 5 : Show "424"                     ' expect: 424 424
f = 1 Is 2 : Show "424"                    ' expect: 424 424
Set f = CreateObject("No.Such") : Show "429" ' expect: 429 429
Set f = GetObject("winmgmts:x") : Show "432" ' expect: 432 432
f = k1.p : Show "438"                      ' expect: 438 438
f = k1.W : Show "438"                      ' expect: 438 438
k1.R = 5 : Show "438"                      ' expect: 438 438
f = k1 + 1 : Show "438"                    ' expect: 438 438
S : Show "450"                             ' expect: 450 450
f = Len("a", "b") : Show "450"             ' expect: 450 450
For Each f In 7 : Exit For : Next : Show "451" ' expect: 451 451
f = LoadPicture("x") : Show "481"          ' expect: 481 481
c = 2 : Show "501"                         ' expect: 501 501
Set f = New Unknown : Show "506"           ' expect: 506 506
MsgBox "x" : Show "70"                     ' expect: 70 70
InputBox "x" : Show "70"                   ' expect: 70 70
.x = 1 : Show "505"                        ' expect: 505 505
SetLocale 99999 : Show "447"               ' expect: 447 447
f = DateAdd("x", 1, Date) : Show "5"       ' expect: 5 5
f = Sqr(-1) : Show "5"                     ' expect: 5 5
f = CDate(1e9) : Show "6"                  ' expect: 6 6
f = Exp(1000) : Show "6"                   ' expect: 6 6
Set f = GetRef("nix") : Show "5"           ' expect: 5 5
For Each f In Array(7, 10, 14, 17, 28, 35, 48, 51, 52, 53, 54, 55, 57, 58, 61, 62, 67, 68, 70, 71, 74, 75, 76, 92, 322, 430, 440, 445, 446, 448, 449, 453, 455, 457, 458, 462, 502, 503, 504, 507, 5008, 5016, 32811, 32812)
  Err.Raise f : If Err.Number <> f Or Err.Description = "Unknown runtime error" Then WScript.Echo "missing", f
  Err.Clear
Next
WScript.Echo "done"                        ' expect: done
