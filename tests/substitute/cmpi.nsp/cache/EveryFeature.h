#pragma once

namespace cmpinsp {

/// A schema with everything that a declaration can have.
inline const char* everyFeature() {
  return R"(
    Qualifier Weight : real64 = 1.5, Scope(any), Flavor(DisableOverride, Restricted);
    Qualifier Letter : char16 = 'q', Scope(any), Flavor(Translatable);
    Qualifier Steps : sint8[] = {-1, 0, 1}, Scope(any);
    [Abstract, Description("Root \x00e4\n\"quoted\""), Version("1.0"), Weight(-2.5e300),
     Letter('\''), Steps{-128, 127}, Unknown(17), UnknownList{"a", "b"}, Plain]
    class T_Root {
      [Key, MaxLen(64)] string Name = "the name";
      [ValueMap{"0", "1", "..10", "20..", ".."}, Values{"A", "B", "C", "D", "E"}]
      uint16 Mood = 20;
      boolean On = true; boolean Off = false; boolean Unset;
      uint8 U8 = 255; uint32 U32 = 4294967295; uint64 U64 = 18446744073709551615;
      sint8 S8 = -128; sint16 S16 = -32768; sint32 S32 = -2147483648;
      sint64 S64 = -9223372036854775808;
      real32 R32 = 1.25; real64 R64 = -1.0e-300; char16 C = 'x'; char16 Umlaut = '\x00e4';
      datetime When = "20240131120000.000000+060"; datetime Long = "00000001000000.000000:000";
      string Texts[] = {"", "one", NULL}; uint32 None[]; uint8 Empty[] = {};
      [EmbeddedInstance("T_Leaf")] string Inner;
      [EmbeddedObject] string Objects[];
      uint32 Do([In, Description("How much")] uint32 Much, [In(false), Out] string Answer[],
                [In, Out] T_Root REF Other);
    };
    [Description("Middle")] class T_Middle : T_Root {
      [Override("Mood"), Description("overridden")] uint16 Mood = 1;
      real64 More;
    };
    class T_Leaf : T_Middle {
      [Override("Do")] uint32 Do([In] uint32 Much, [Out] string Answer[], [In, Out] T_Root REF Other);
      boolean Is();
    };
    [Association, Aggregation] class T_Link {
      [Key, Aggregate] T_Root REF Whole;
      [Key, Weak] T_Leaf REF Part;
    };
    class T_Empty { };
    instance of T_Leaf as $Leaf {
      Name = "leaf"; Mood = 0; Texts = {"x", NULL}; U64 = 18446744073709551615; R64 = 2.5; C = 'y';
      Inner = instance of T_Leaf { Name = "inner"; On = false; S64 = -1; };
    };
    instance of T_Link { Whole = $Leaf; Part = "T_Leaf.Name=\"leaf\""; };
  )";
}

}  // namespace cmpinsp
