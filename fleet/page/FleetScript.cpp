#include "fleet/page/Inlays.h"

namespace fleet::page {

// Rows of the data are lists, as names of members would be most of the page: PageData.cpp writes
// them.
const Inlay kFleetScript = {R"js(
'use strict';

class Machine {
  constructor(row, number, sets) {
    let set;
    [this.name, this.kind, set, this.results, this.slow, this.facts, this.notes] = row;
    if (Array.isArray(set)) sets.push(set);
    this.tests = Array.isArray(set) ? set : sets[set];
    this.number = number;
    this.failures = 0;
    for (const result of this.results) if (result === 'f') ++this.failures;
  }

  // The letter of what a test came to; empty where it did not run here.
  resultOf(test) {
    const at = this.tests.indexOf(test);
    return at < 0 ? '' : this.results[at];
  }
}

class Fleet {
  constructor(data) {
    this.tests = data.tests;
    this.kinds = data.kinds;
    this.looks = new Map(data.looks.map(([letter, style, word, sign]) => [letter, {style, word, sign}]));
    this.groups = data.groups;
    const sets = [];
    this.machines = data.machines.map((row, number) => new Machine(row, number, sets));
    const names = new Intl.Collator('en', {numeric: true});
    this.byName = (a, b) => names.compare(a.name, b.name) || a.number - b.number;
  }

  chosen(wanted) {
    return this.sorted(this.ofGroup(wanted.group).filter(this.isWanted(wanted)), wanted.sort);
  }

  // The number is a text from the address, which may be any.
  group(number) {
    return /^[0-9]+$/.test(number) ? this.groups[Number(number)] : undefined;
  }

  ofGroup(number) {
    const group = this.group(number);
    return group ? group.machines.map(machine => this.machines[machine]) : this.machines;
  }

  isWanted({machine, verdict}) {
    const part = machine.toLowerCase();
    const hasName = part ? m => m.name.toLowerCase().includes(part) : () => true;
    if (verdict === 'slow') return m => m.slow > 0 && hasName(m);
    const kind = this.kinds.findIndex(([key]) => key === verdict);
    return kind < 0 ? hasName : m => m.kind === kind && hasName(m);
  }

  sorted(machines, sort) {
    if (sort === 'name') return machines.sort(this.byName);
    if (sort === 'failures') return machines.sort((a, b) => b.failures - a.failures || a.kind - b.kind);
    if (sort === 'slow') return machines.sort((a, b) => b.slow - a.slow || a.kind - b.kind);
    const test = /^test([0-9]+)$/.exec(sort);
    return test ? this.byTest(machines, Number(test[1])) : machines.sort((a, b) => a.kind - b.kind);
  }

  // The looks are in their order, the worst first.
  byTest(machines, test) {
    const ranks = new Map([...this.looks.keys(), ''].map((letter, rank) => [letter, rank]));
    const rank = machines.map(machine => [ranks.get(machine.resultOf(test)), machine]);
    return rank.sort((a, b) => a[0] - b[0]).map(([, machine]) => machine);
  }
}
)js",
                            "sha256-FpmbiXuVQ41cgnyU3oijsrEfFCfP7ZJjatHsecJehQ4="};

}  // namespace fleet::page
