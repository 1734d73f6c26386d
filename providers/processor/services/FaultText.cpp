#include "providers/processor/services/FaultText.h"

#include "providers/common/Findings.h"

namespace providers {

namespace {

std::string cpuText(unsigned cpu) { return "CPU " + std::to_string(cpu); }

std::string cpusText(const std::vector<unsigned>& cpus) {
  return (cpus.size() == 1 ? "CPU " : "CPUs ") + cpuListText(cpus);
}

std::string placeText(const CpuPlace& place) {
  return cpuText(place.cpu) + " (core " + std::to_string(place.core) + " of processor " +
         std::to_string(place.package) + ")";
}

std::string wordsText(std::uint64_t expected, std::uint64_t found) {
  return "expected " + hexText(expected) + ", found " + hexText(found) + ", wrong bits " +
         hexText(expected ^ found);
}

std::string againText(const Verdict& verdict) {
  if (!verdict.wasTried) return "  Not tried again, since " + verdict.whyLeftOut + "\n";
  std::string text = "  Tried again: wrong " + std::to_string(verdict.wrongAlone) + " of " +
                     std::to_string(verdict.tries) + " times alone";
  if (verdict.wrongUnderLoad)
    text += ", " + std::to_string(*verdict.wrongUnderLoad) + " with all the others busy";
  if (!verdict.wrongToo.empty()) text += "; wrong on " + cpusText(verdict.wrongToo) + ", too";
  if (!verdict.right.empty()) text += "; right on " + cpusText(verdict.right);
  if (verdict.leftOut > 0)
    text += "; not tried on " + countText(verdict.leftOut, "other thread") + ", since " +
            verdict.whyLeftOut;
  return text + "\n";
}

std::string extentText(const CalculationFault& finding) {
  const Verdict& verdict = finding.verdict;
  if (!verdict.wasTried) return {};
  if (verdict.extent == Extent::Undecided)
    return "  They disagree, and there are too few others to tell which of them is wrong\n";
  return "  A fault of " + partText(finding) +
         (verdict.comesBack ? " that comes back\n" : " that did not come back\n");
}

}  // namespace

std::string partText(const CalculationFault& finding) {
  const CpuPlace& place = finding.verdict.place;
  const std::string package = "processor " + std::to_string(place.package);
  const std::string core = "core " + std::to_string(place.core) + " of " + package;
  switch (finding.verdict.extent) {
    case Extent::Thread:
      return "thread " + cpuText(place.cpu) + " of " + core;
    case Extent::Core:
      return core;
    case Extent::Package:
      return package + " as a whole";
    case Extent::Everywhere:
      return "more than one processor";
    case Extent::Undecided:
      break;
  }
  return cpuText(finding.suspicion.cpu) + " or " + cpuText(finding.suspicion.answeredBy);
}

std::string faultText(const CalculationFault& finding) {
  const Suspicion& suspicion = finding.suspicion;
  const Verdict& verdict = finding.verdict;
  const std::string what =
      suspicion.isAnswer
          ? "the answer known for it"
          : "operands " + operandText(suspicion.operation, suspicion.seed, verdict.mismatch);
  return placeText(verdict.place) + ": " + suspicion.operation.name + ", " +
         countText(finding.count, "wrong result") + "\n  First with " + what + ": " +
         wordsText(verdict.mismatch.expected, verdict.mismatch.found) + "\n" + againText(verdict) +
         extentText(finding) + "  " + correctiveAction(finding) + "\n";
}

std::string correctiveAction(const CalculationFault& finding) {
  const std::string package = "processor " + std::to_string(finding.verdict.place.package);
  if (!finding.verdict.wasTried) return "Run the test again to its end";
  switch (finding.verdict.extent) {
    case Extent::Everywhere:
      return "Update firmware and microcode and test again; the same fault in several processors "
             "is "
             "rarely theirs";
    case Extent::Undecided:
      return "Test again with more threads allowed; replace the processor if they still disagree";
    default:
      break;
  }
  if (!finding.verdict.comesBack)
    return "Check cooling and power supply, update the microcode, and test longer; replace " +
           package + " if it happens again";
  std::string action = "Replace " + package;
  if (finding.verdict.extent != Extent::Package)
    action += "; until then keep " + cpuText(finding.verdict.place.cpu) + " off";
  return action;
}

std::string faultText(const ExchangeFault& fault) {
  std::string text = cpuText(fault.cpu1) + " and " + cpuText(fault.cpu2) +
                     ": a message arrived wrong at " + cpuText(fault.wrong.reader) + ", word " +
                     std::to_string(fault.wrong.word) + "\n  " +
                     wordsText(fault.wrong.expected, fault.wrong.found) + "\n  ";
  if (!fault.wasTried)
    return text + "Not tried again, since " + fault.whyLeftOut + "\n  " + correctiveAction(fault) +
           "\n";
  text += std::string("Tried again: ") + (fault.comesBack ? "wrong" : "right") + " between the two";
  if (fault.hadOthers)
    text += std::string(", ") + (fault.firstWithOthers ? "wrong" : "right") + " between " +
            cpuText(fault.cpu1) + " and others, " + (fault.secondWithOthers ? "wrong" : "right") +
            " between " + cpuText(fault.cpu2) + " and others";
  if (fault.leftOut > 0)
    text += "; not tried with " + countText(fault.leftOut, "other thread") + ", since " +
            fault.whyLeftOut;
  return text + "\n  " + correctiveAction(fault) + "\n";
}

std::string correctiveAction(const ExchangeFault& fault) {
  if (!fault.wasTried) return "Run the test again to its end";
  if (!fault.comesBack)
    return "Check cooling and power supply and test longer; replace the processor if it happens "
           "again";
  if (fault.firstWithOthers != fault.secondWithOthers)
    return "Replace the processor that has " +
           cpuText(fault.firstWithOthers ? fault.cpu1 : fault.cpu2);
  return "Replace the processors that have these threads, one after the other; between two "
         "sockets, "
         "test each alone";
}

}  // namespace providers
