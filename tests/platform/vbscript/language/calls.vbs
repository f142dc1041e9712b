Sub Inc(ByRef v) : v = v + 1 : End Sub
Sub IncV(ByVal v) : v = v + 1 : End Sub
Sub Inc2(a, b) : a = a + 1 : b = b + 10 : End Sub
Function Twice(v) : v = v * 2 : Twice = v : End Function
Dim x, y, a(2), d, o, f, r
x = 1 : Inc x : WScript.Echo x ' expect: 2
Inc(x) : WScript.Echo x ' expect: 2
Inc (x) : WScript.Echo x ' expect: 2
Call Inc(x) : WScript.Echo x ' expect: 3
Call Inc((x)) : WScript.Echo x ' expect: 3
IncV x : WScript.Echo x ' expect: 3
Inc x + 0 : WScript.Echo x ' expect: 3
Inc a(1) : WScript.Echo a(1) ' expect: 1
Call Inc(a(1)) : WScript.Echo a(1) ' expect: 2
Inc (a(1)) : WScript.Echo a(1) ' expect: 2
x = 1 : y = 1 : Inc2 x, y : WScript.Echo x, y ' expect: 2 11
Inc2 (x), y : WScript.Echo x, y ' expect: 2 21
Inc2 (x), (y) : WScript.Echo x, y ' expect: 2 21
Call Inc2(x, (y)) : WScript.Echo x, y ' expect: 3 21
x = 3 : y = Twice(x) : WScript.Echo x, y ' expect: 6 6
y = Twice((x)) : WScript.Echo x, y ' expect: 6 12
y = Twice(x + 0) : WScript.Echo x, y ' expect: 6 12
Twice x : WScript.Echo x ' expect: 12
x = Array(1, 2, 3) : Inc x(0) : WScript.Echo x(0) ' expect: 2
Set d = CreateObject("Scripting.Dictionary") : d("k") = 1 : Inc d("k") : WScript.Echo d("k") ' expect: 1
Class Box
  Public V
  Private m
  Public Arr(2)
  Public Property Get P : P = m : End Property
  Public Property Let P(n) : m = n : End Property
  Public Default Property Get Item(i) : Item = "item" & i : End Property
  Public Property Let Item(i, v) : WScript.Echo "let", i, v : End Property
  Public Property Set Item(i, v) : WScript.Echo "set", i, TypeName(v) : End Property
  Public Sub Meth(ByRef q) : q = q & "!" : End Sub
  Public Function Self : Set Self = Me : End Function
  Public Function Cat(q, w) : Cat = q & w : End Function
  Public Property Get Two(i, j) : Two = i * j : End Property
  Public Property Let Two(i, j, v) : WScript.Echo "two", i, j, v : End Property
End Class
Set o = New Box
o.V = 1 : Inc o.V : WScript.Echo o.V ' expect: 1
o.P = 5 : Inc o.P : WScript.Echo o.P ' expect: 5
o.Arr(1) = 1 : Inc o.Arr(1) : WScript.Echo o.Arr(1) ' expect: 1
x = "a" : o.Meth x : WScript.Echo x ' expect: a!
o.Meth (x) : WScript.Echo x ' expect: a!
o.Meth(x) : WScript.Echo x ' expect: a!
Call o.Meth(x) : WScript.Echo x ' expect: a!!
WScript.Echo o(3), o.Item(4), o.Self()(5), o.Self.Self()(6) ' expect: item3 item4 item5 item6
o(1) = 2 ' expect: let 1 2
o.Item(1) = 2 ' expect: let 1 2
Set o(1) = o ' expect: set 1 Box
Set o.Item(7) = Nothing ' expect: set 7 Nothing
o.Self()(8) = 9 ' expect: let 8 9
o.Self.Item(8) = 9 ' expect: let 8 9
o.Two(1, 2) = 3 ' expect: two 1 2 3
WScript.Echo o.Two(3, 4) ' expect: 12
WScript.Echo o.Cat("a", "b") ' expect: ab
o.Cat "a", "b"
x = o.Cat("a", o.Cat("b", "c")) : WScript.Echo x ' expect: abc
Function NoArg : NoArg = 5 : End Function
Function NoArg2() : NoArg2 = 6 : End Function
x = NoArg : y = NoArg() : WScript.Echo x, y, NoArg2, NoArg2(), NoArg + NoArg2 ' expect: 5 5 6 6 11
NoArg : NoArg() : Call NoArg : Call NoArg()
Function Fact(n) : If n <= 1 Then Fact = 1 Else Fact = n * Fact(n - 1) : End Function
WScript.Echo Fact(5), Fact(10), TypeName(Fact(10)) ' expect: 120 3628800 Long
Function Ret : Ret = 1 : Ret = Ret + 1 : End Function : WScript.Echo Ret ' expect: 2
Function RetObj : Set RetObj = o : End Function : WScript.Echo TypeName(RetObj), RetObj()(2), RetObj.V ' expect: Box item2 1
Function RetArr : Dim q(1) : q(0) = "z" : q(1) = "w" : RetArr = q : End Function : WScript.Echo RetArr()(1), UBound(RetArr) ' expect: w 1
Function RetNone : End Function : WScript.Echo TypeName(RetNone) ' expect: Empty
Set r = GetRef("Fact") : WScript.Echo r(4), TypeName(r) ' expect: 24 Object
Set r = GetRef("Inc") : x = 1 : r x : WScript.Echo x ' expect: 2
Call r(x) : WScript.Echo x ' expect: 3
Set r = GetRef("NoArg") : WScript.Echo r, r() ' expect: 5 5
Sub Apply(fn, v) : WScript.Echo fn(v) : End Sub : Apply GetRef("Twice"), 21 ' expect: 42
Function Miss(a, b) : Miss = TypeName(a) & VarType(b) : End Function : WScript.Echo Miss(1, ) ' expect: Integer10
Sub Opt(a, b) : WScript.Echo VarType(a), VarType(b) : End Sub
Opt , 1 ' expect: 10 2
Opt 1, ' expect: 2 10
Sub ArrP(p()) : p(0) = 9 : End Sub
Dim ar(1) : ArrP ar : WScript.Echo ar(0) ' expect: 9
Sub ArrV(ByVal p) : p(0) = 8 : End Sub : ArrV ar : WScript.Echo ar(0) ' expect: 9
Sub ReD(p) : ReDim p(5) : End Sub : Dim dyn() : ReDim dyn(1) : ReD dyn : WScript.Echo UBound(dyn) ' expect: 5
Sub Order(a, b, c) : End Sub
Function Say(n) : WScript.Echo "say" & n : Say = n : End Function
Order Say(1), Say(2), Say(3)
' expect: say1
' expect: say2
' expect: say3
x = Say(1) + Say(2) * Say(3)
' expect: say1
' expect: say2
' expect: say3
Dim aa(5) : x = 0 : Function NextI : x = x + 1 : NextI = x : End Function
aa(NextI) = NextI : WScript.Echo aa(1), aa(2) ' expect: 2
Sub Shadow : Dim Len : Len = 5 : WScript.Echo Len : End Sub : Shadow ' expect: 5
Sub SetGlobal : gg = 5 : End Sub : SetGlobal : WScript.Echo TypeName(gg) ' expect: Empty
Dim hh : Sub SetGlobal2 : hh = 5 : End Sub : SetGlobal2 : WScript.Echo hh ' expect: 5
implicit = 7 : Sub ReadImp : WScript.Echo implicit : implicit = 8 : End Sub : ReadImp : WScript.Echo implicit
' expect: 7
' expect: 8
Sub LocalHide : Dim hh : hh = 6 : End Sub : LocalHide : WScript.Echo hh ' expect: 5
Sub Two2 : WScript.Echo "first" : End Sub
Sub Two2 : WScript.Echo "second" : End Sub
Two2 ' expect: second
Sub ExitEarly : WScript.Echo "in" : Exit Sub : WScript.Echo "no" : End Sub : ExitEarly ' expect: in
Function ExitF : ExitF = 3 : Exit Function : ExitF = 4 : End Function : WScript.Echo ExitF ' expect: 3
Private Sub Pr : WScript.Echo "pr" : End Sub : Pr ' expect: pr
Public Function Pu : Pu = "pu" : End Function : WScript.Echo Pu ' expect: pu
WScript.Echo Late(2) ' expect: 4
Function Late(n)
  Late = n * n
End Function
f = "str" & Late(3) : WScript.Echo f ' expect: str9
WScript.Echo (Late(2)) + 1, (Late((2))) ' expect: 5 4
WScript.Echo (1), 2, (3) ' expect: 1 2 3
WScript.Echo -1, +1 ' expect: -1 1
WScript.Echo Not True ' expect: False
WScript.Echo "a" & "b", 1 = 1 ' expect: ab True
o.V = Array(1, 2, 3) : WScript.Echo o.V(1) ' expect: 2
o.V(1) = 5 : WScript.Echo o.V(1) ' expect: 5
x = o.V : x(1) = 7 : WScript.Echo o.V(1) ' expect: 5
Set o.V = o : WScript.Echo TypeName(o.V), o.V(1) ' expect: Box item1
Set a(0) = o : WScript.Echo a(0)(2), a(0).P ' expect: item2 5
a(0).P = 6 : WScript.Echo o.P ' expect: 6
a(0).Arr(2) = 4 : WScript.Echo o.Arr(2) ' expect: 4
With o : .P = 9 : WScript.Echo .P, .Cat("q", "w"), .Item(3) : .Item(1) = 4 : End With
' expect: 9 qw item3
' expect: let 1 4
With d : .Add "z", 1 : WScript.Echo .Item("z"), .Exists("q") : End With ' expect: 1 False
d.Add "arr", Array(1, 2) : WScript.Echo d("arr")(1), d.Item("arr")(0) ' expect: 2 1
Set d("obj") = o : WScript.Echo d("obj").P, d("obj")(3) ' expect: 9 item3
d("n") = 1 : d("n") = d("n") + 1 : WScript.Echo d("n") ' expect: 2
WScript.Echo d.Count, UBound(d.Keys), d.Keys()(0), d.Items()(1) ' expect: 5 4 k 1
x = d.Keys : WScript.Echo x(0) ' expect: k
