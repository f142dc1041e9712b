Dim o, p, q, log
Class Life
  Public Name
  Private Sub Class_Initialize : WScript.Echo "init" : Name = "n" : End Sub
  Private Sub Class_Terminate : WScript.Echo "term", Name : End Sub
End Class
Set o = New Life : o.Name = "a" ' expect: init
Set p = o : Set o = Nothing : WScript.Echo "still" ' expect: still
Set p = Nothing ' expect: term a
Set o = New Life : o.Name = "b" : Set o = New Life ' expect: init
' expect: init
' expect: term b
o.Name = "c" : o = Empty ' expect: term c
Sub Local : Dim l : Set l = New Life : l.Name = "loc" : WScript.Echo "end of sub" : End Sub
Local
' expect: init
' expect: end of sub
' expect: term loc
Function Make(n) : Set Make = New Life : Make.Name = n : End Function
Make "tmp" : WScript.Echo "x"
' expect: init
' expect: term tmp
' expect: x
WScript.Echo Make("t2").Name : WScript.Echo "y"
' expect: init
' expect: term t2
' expect: t2
' expect: y
With New Life : .Name = "with" : WScript.Echo .Name : End With : WScript.Echo "z"
' expect: init
' expect: with
' expect: term with
' expect: z
Dim arr(1) : Set arr(0) = New Life : arr(0).Name = "arr" : Erase arr : WScript.Echo "erased"
' expect: init
' expect: term arr
' expect: erased
Class Member
  Private m_v
  Public Pub
  Dim Dimmed
  Public Property Get V : V = m_v : End Property
  Public Property Let V(x) : m_v = x : End Property
  Public Property Set V(x) : Set m_v = x : End Property
  Private Sub Hidden : End Sub
  Private Property Get PrivP : PrivP = "privp" : End Property
  Function Default2 : Default2 = "no public keyword" : End Function
  Public Function CallHidden : Hidden : CallHidden = PrivP & Me.V & V & m_v & Pub : End Function
  Public Function Rec(n) : If n = 0 Then Rec = "end" Else Rec = n & Rec(n - 1) : End Function
  Public Function Other(x) : Other = x.GetPriv : End Function
  Public Function GetPriv : GetPriv = m_v : End Function
  Public Sub SetSelf : Pub = "self" : Me.Pub = Me.Pub & "2" : V = 5 : Me.V = V + 1 : End Sub
  Public Function Shadow(Pub) : Shadow = Pub : End Function
  Public Function ShadowLocal : Dim m_v : m_v = "local" : ShadowLocal = m_v : End Function
  Public Function GlobalVar : GlobalVar = gvar : gvar = "changed" : End Function
End Class
Dim gvar : gvar = "g"
Set o = New Member : o.V = 3 : o.Pub = 4 : o.Dimmed = 5
WScript.Echo o.V, o.Pub, o.Dimmed, o.Default2, o.CallHidden ' expect: 3 4 5 no public keyword privp3334
WScript.Echo o.Rec(3), o.Shadow("arg"), o.ShadowLocal, o.GlobalVar, gvar ' expect: 321end arg local g changed
o.SetSelf : WScript.Echo o.Pub, o.V ' expect: self2 6
Set o.V = Nothing : o.V = 1
Set p = New Member : p.V = "other" : WScript.Echo o.Other(p) ' expect: other
On Error Resume Next
o.Hidden : WScript.Echo Err.Number : Err.Clear ' expect: 438
p = o.m_v : WScript.Echo Err.Number : Err.Clear ' expect: 438
o.PrivP : WScript.Echo Err.Number : Err.Clear ' expect: 438
On Error GoTo 0
Class Def1 : Public Default Property Get Val : Val = 42 : End Property : End Class
Class Def2 : Private d : Private Sub Class_Initialize : Set d = New Def1 : End Sub
Public Default Property Get Inner : Set Inner = d : End Property : End Class
Set o = New Def1 : p = o : WScript.Echo p, TypeName(p), o + 1, o & "s", o = 42, -o, Len(o), VarType(o), TypeName(o), IsObject(o)
' expect: 42 Integer 43 42s True -42 2 2 Def1 True
Set o = New Def2 : p = o : WScript.Echo p, o * 2, o & "" ' expect: 42 84 42
If o Then WScript.Echo "truthy" ' expect: truthy
Select Case o : Case 42 : WScript.Echo "select default" : End Select ' expect: select default
Dim da(50) : da(o) = "idx" : WScript.Echo da(42), da(o) ' expect: idx idx
For q = o To o + 1 : Next : WScript.Echo q ' expect: 44
WScript.Echo Mid("abcdef", New OneCls, 2) ' expect: bc
Class OneCls : Public Default Function F : F = 2 : End Function : End Class
Class DefArg
  Private dict
  Private Sub Class_Initialize : Set dict = CreateObject("Scripting.Dictionary") : End Sub
  Public Default Property Get Item(k) : If IsObject(dict(k)) Then Set Item = dict(k) Else Item = dict(k)
  End Property
  Public Property Let Item(k, v) : dict(k) = v : End Property
  Public Property Set Item(k, v) : Set dict(k) = v : End Property
  Public Property Get Count : Count = dict.Count : End Property
End Class
Set o = New DefArg : o("a") = 1 : o("a") = o("a") + 1 : Set o("b") = New Def1
WScript.Echo o("a"), o("b"), o.Item("a"), o.Count, o("b").Val ' expect: 2 42 2 2 42
o.Item("c") = Array(1, 2) : WScript.Echo o("c")(1) ' expect: 2
Class Chain : Private t
  Public Function Add(x) : t = t & x : Set Add = Me : End Function
  Public Property Get Text : Text = t : End Property
End Class
WScript.Echo (New Chain).Add("a").Add("b").Text ' expect: ab
Set o = New Chain : o.Add("x").Add "y" : WScript.Echo o.Text ' expect: xy
o.Add("1").Add("2").Add "3" : WScript.Echo o.Text ' expect: xy123
Call o.Add("4").Add("5") : WScript.Echo o.Text ' expect: xy12345
Class Node : Public NextN, Val : End Class
Dim head, n, i : Set head = Nothing
For i = 1 To 3 : Set n = New Node : n.Val = i : Set n.NextN = head : Set head = n : Next
Dim s : s = "" : Set n = head : Do Until n Is Nothing : s = s & n.Val : Set n = n.NextN : Loop : WScript.Echo s ' expect: 321
WScript.Echo head.NextN.NextN.Val, head.NextN Is head.NextN, head Is head.NextN ' expect: 1 True False
Class Indexed
  Private a(3)
  Public Property Get At(i) : At = a(i) : End Property
  Public Property Let At(i, v) : a(i) = v : End Property
  Public Function Sum : Dim x : For Each x In a : Sum = Sum + x : Next : End Function
  Public Sub Grow : ReDim b(2) : b(1) = 7 : a(0) = b(1) : End Sub
  Public Function GetAll : GetAll = a : End Function
End Class
Set o = New Indexed : For i = 0 To 3 : o.At(i) = i * i : Next : WScript.Echo o.At(3), o.Sum ' expect: 9 14
o.Grow : WScript.Echo o.At(0), UBound(o.GetAll) ' expect: 7 3
Class WithDyn : Public d() : Public Sub Init(n) : ReDim d(n) : d(n) = "end" : End Sub : Public Sub More : ReDim Preserve d(UBound(d) + 1) : End Sub : End Class
Set o = New WithDyn : o.Init 2 : o.More : WScript.Echo UBound(o.d), o.d(2) ' expect: 3 end
Class Prop1 : Public Property Let X(v) : WScript.Echo "let", v : End Property : Public Property Set X(v) : WScript.Echo "set", TypeName(v) : End Property : End Class
Set o = New Prop1 : o.X = 5 : Set o.X = o : o.X = New Def1
' expect: let 5
' expect: set Prop1
' expect: let 42
Class OnlyObj : Public X : End Class
Set o = New OnlyObj : Set o.X = New Def1 : WScript.Echo TypeName(o.X), o.X ' expect: Def1 42
o.X = New Def1 : WScript.Echo TypeName(o.X) ' expect: Integer
Dim d2 : Set d2 = CreateObject("Scripting.Dictionary") : Set d2("o") = New Def1 : WScript.Echo TypeName(d2("o")), d2("o") + 1 ' expect: Def1 43
Class InitOrder : Public a : Private b : Private Sub Class_Initialize : a = IsEmpty(b) & TypeName(Me) : End Sub : End Class
WScript.Echo (New InitOrder).a ' expect: TrueInitOrder
Class Selfish : Public Me2 : Private Sub Class_Initialize : Set Me2 = Me : End Sub : Private Sub Class_Terminate : WScript.Echo "selfish gone" : End Sub : End Class
Set o = New Selfish : Set o.Me2 = Nothing : Set o = Nothing ' expect: selfish gone
Function RetNew : Set RetNew = New Def1 : End Function : WScript.Echo RetNew + 1, RetNew().Val, TypeName(RetNew) ' expect: 43 42 Def1
Set o = GetRef("RetNew") : WScript.Echo o().Val, TypeName(o()) ' expect: 42 Def1
Class Cb : Public H : Public Sub Fire(x) : H x : End Sub : Public Function Ask(x) : Ask = H(x) : End Function : End Class
Sub Handler(x) : WScript.Echo "handled", x : End Sub
Function Handler2(x) : Handler2 = x * 2 : End Function
Set o = New Cb : Set o.H = GetRef("Handler") : o.Fire 5 : o.H 6 : Call o.H(7) ' expect: handled 5
' expect: handled 6
' expect: handled 7
Set o.H = GetRef("Handler2") : WScript.Echo o.Ask(4), o.H(5) ' expect: 8 10
With o : WScript.Echo .H(6) : With New Def1 : WScript.Echo .Val : End With : WScript.Echo .Ask(1) : End With
' expect: 12
' expect: 42
' expect: 2
Set o = Nothing : Set p = Nothing : WScript.Echo o Is Nothing, o Is p, Not o Is Nothing ' expect: True True False
