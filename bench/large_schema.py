#!/usr/bin/env python3
"""Writes a MOF schema of the size that large published ones have: 1,600 classes in a file each, a
master file that includes them all, about 10 MB with descriptions and qualifiers of realistic length.

usage: large_schema.py DIR [CLASSES]

The same call writes the same bytes. DIR is made as needed; to measure with the schema, write it
into the schema folder of an installation.
"""
import random
import sys
from pathlib import Path

PREFIX = "LARGE"
DEPTH = 6  # of inheritance, the root class counted

WORDS = (
    "the a of to and in is that for it as an element system managed device property value which "
    "this may be used by instance class logical physical status state indicates describes whether "
    "operational capacity maximum minimum enabled requested current default identifies service "
    "component association dependency antecedent settings capabilities configuration network "
    "storage memory processor port controller protocol address identifier scope namespace unique "
    "implementation client provider should not when if other than more information supported "
    "vendor specific reserved units bytes seconds time interval number list array string set only "
    "defined within context same between different subclass inherited required optional"
).split()
NOUNS = (
    "Element System Device Port Controller Service Setting Capability Memory Processor Storage "
    "Volume Pool Protocol Endpoint Session Account Role Policy Rule Action Filter Queue Job Record "
    "Log Event Sensor Fan Battery Supply Slot Card Chassis Rack Cache Disk Drive Media Network "
    "Route Switch Channel Profile Product Package Software Firmware Boot Clock Alarm Test Result"
).split()
TYPES = (
    ["string"] * 9 + ["uint16"] * 8 + ["uint32"] * 4 + ["uint64"] * 3 + ["boolean"] * 4
    + ["datetime"] * 2 + ["uint8", "sint32", "sint64", "real32"]
)


class Writer:
    def __init__(self):
        self.random = random.Random(20240131)
        self.names = []

    def prose(self, words):
        text = " ".join(self.random.choice(WORDS) for _ in range(words))
        return text[0].upper() + text[1:] + "."

    def quoted(self, text, indent):
        """The text as adjacent literals of at most 60 letters, as published schemas wrap it."""
        lines, line = [], ""
        for word in text.split(" "):
            if len(line) + len(word) > 60:
                lines.append(line)
                line = ""
            line += word + " "
        lines.append(line.rstrip())
        return f"\n{indent}".join(f'"{line}"' for line in lines)

    def description(self, least, most, indent):
        words = self.random.randint(least, most)
        return f"Description (\n{indent}{self.quoted(self.prose(words), indent)} )"

    def value_map(self, indent):
        count = self.random.randint(3, 14)
        numbers = ", ".join(f'"{n}"' for n in range(count))
        names = ", ".join(f'"{self.random.choice(NOUNS)} {n}"' for n in range(count))
        return (f'ValueMap {{ {numbers}, "..", "32768..65535" }},\n{indent}'
                f'Values {{ {names}, "DMTF Reserved", "Vendor Reserved" }}')

    def property_of(self, name, cim_type):
        indent = " " * 9
        qualifiers = [self.description(15, 90, indent)]
        if cim_type == "string":
            qualifiers.append(f"MaxLen ( {self.random.choice([64, 256, 1024])} )")
        if cim_type == "uint16" and self.random.random() < 0.7:
            qualifiers.append(self.value_map(indent))
        if cim_type == "uint64":
            qualifiers.append('Units ( "Bytes" ), PUnit ( "byte" )')
        if self.random.random() < 0.3:
            other = self.random.choice(NOUNS)
            qualifiers.append(f'ModelCorrespondence {{ "{PREFIX}_{other}.{other}State" }}')
        if self.random.random() < 0.2:
            mib = f"MIB.IETF|{self.random.choice(NOUNS)}-MIB"
            qualifiers.append(f'MappingStrings {{ "{mib}.{name}" }}')
        is_array = cim_type in ("string", "uint16") and self.random.random() < 0.15
        if is_array:
            qualifiers.append('ArrayType ( "Indexed" )')
        joined = f",\n{indent}".join(qualifiers)
        return f"      [{joined}]\n   {cim_type} {name}{'[]' if is_array else ''};\n"

    def method(self, number):
        indent = " " * 9
        parameters = ",\n".join(
            f"         [{'IN' if i % 3 else 'IN ( false ), OUT'},\n{indent}"
            f"{self.description(8, 40, indent)}]\n      {self.random.choice(TYPES)} Parameter{i}"
            for i in range(self.random.randint(0, 4)))
        return (f"      [{self.description(20, 80, indent)},\n{indent}{self.value_map(indent)}]\n"
                f"   uint32 Request{self.random.choice(NOUNS)}{number}(\n{parameters});\n")

    def features(self, tag):
        texts = []
        for i in range(self.random.randint(3, 14)):
            name = f"{self.random.choice(NOUNS)}{self.random.choice(NOUNS)}{tag}{i}"
            texts.append(self.property_of(name, self.random.choice(TYPES)))
        if self.random.random() < 0.35:
            texts += [self.method(f"{tag}{i}") for i in range(self.random.randint(1, 4))]
        return "\n".join(texts)

    def class_text(self, number, name, superclass):
        indent = " " * 6
        qualifiers = [f'Version ( "2.{number % 50}.0" )',
                      f'UMLPackagePath ( "{PREFIX}::Part{number % 40}" )']
        if superclass is None or number % 9 == 0:
            qualifiers.insert(0, "Abstract")
        qualifiers.append(self.description(30, 120, indent))
        joined = f",\n{indent}".join(qualifiers)
        key = "" if superclass else (f"      [Key, {self.description(20, 60, ' ' * 9)}]\n"
                                     "   string InstanceID;\n\n")
        above = f" : {superclass}" if superclass else ""
        return (f"// {name}\n   [{joined}]\nclass {name}{above} {{\n\n{key}"
                f"{self.features(f'C{number}N')}\n}};\n")

    def association_text(self, number, name, ends):
        indent = " " * 9
        references = "\n".join(
            f"      [Key, {self.description(10, 50, indent)}]\n   {end} REF {role};\n"
            for role, end in zip(("Antecedent", "Dependent"), ends))
        description = self.description(30, 120, " " * 6)
        version = f'Version ( "2.{number % 50}.0" )'
        return (f"// {name}\n   [Association, {version},\n      {description}]\n"
                f"class {name} {{\n\n{references}}};\n")

    def schema(self, count):
        """Pairs of class name and text, superclasses first."""
        by_depth = [[] for _ in range(DEPTH)]
        for number in range(count):
            name = f"{PREFIX}_{self.random.choice(NOUNS)}{self.random.choice(NOUNS)}{number}"
            if number % 5 == 4 and by_depth[0]:
                ends = [self.random.choice(self.names) for _ in range(2)]
                yield name, self.association_text(number, name, ends)
                continue
            depth = 0 if number < 20 else self.random.choice((1, 1, 2, 2, 3, 3, 4, DEPTH - 1))
            while depth > 0 and not by_depth[depth - 1]:
                depth -= 1
            superclass = self.random.choice(by_depth[depth - 1]) if depth else None
            by_depth[depth].append(name)
            self.names.append(name)
            yield name, self.class_text(number, name, superclass)


def main(arguments):
    if len(arguments) not in (1, 2):
        sys.exit(__doc__)
    folder = Path(arguments[0])
    classes = folder / "classes"
    classes.mkdir(parents=True, exist_ok=True)
    includes = []
    for name, text in Writer().schema(int(arguments[1]) if len(arguments) == 2 else 1600):
        (classes / f"{name}.mof").write_text(text, encoding="utf-8", newline="\n")
        includes.append(f'#pragma include ("classes/{name}.mof")\n')
    (folder / "large_schema.mof").write_text("".join(includes), encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main(sys.argv[1:])
