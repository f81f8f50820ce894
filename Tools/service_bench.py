"""What the service adds to a model server: time, memory, and what its polls cost. Part of ./kestrel bench."""

import subprocess

import steps

LATENCY_AIM = 3.0  # milliseconds of a turn, the median
SLOWEST_LATENCY_AIM = 10.0  # of a turn in a hundred
POLLS_AIM = 0.7  # of those that a handler without anything behind it answers
MEMORY_AIM = 200.0  # kilobytes of a conversation
FLAT_AIM = 1.5  # times as long as at the beginning


def run(preset):
    done = subprocess.run([steps.binary(preset, "ServiceBench")], capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise steps.StepFailed(f"ServiceBench failed:\n{done.stderr}")
    return {words[0]: [float(word) for word in words[1:]]
            for words in (line.split() for line in done.stdout.splitlines()) if words}


def measure(preset):
    line = steps.ProgressLine("Measuring the service")
    results = run(preset)
    line.finish("done")
    median, slowest = results["Latency"]
    ours, bare = results["Polls"]
    early, late = results["LongConversation"]
    failed, kilobytes, seconds = results["Conversations"]
    print(f"ServiceLatency: a turn takes {median:.1f} ms longer than a request to the model server, one in a hundred "
          f"{slowest:.1f} ms (aim: below {LATENCY_AIM:g} and {SLOWEST_LATENCY_AIM:g})")
    print(f"ServicePolls: {ours:.0f} a second, a bare handler: {bare:.0f}; ratio {ours / bare:.2f} "
          f"(aim: above {POLLS_AIM:g})")
    print(f"ServiceLongConversation: turns 400 to 500 take {late:.1f} ms each, turns 100 to 200 {early:.1f}; "
          f"ratio {late / early:.2f} (aim: below {FLAT_AIM:g})")
    print(f"ServiceConversations: 200 at once in {seconds:.1f} s with a model that takes 1 s, {failed:.0f} refused; "
          f"{kilobytes:.0f} KB for each of 1,000 open ones (aim: none, below {MEMORY_AIM:g})")
    return (median < LATENCY_AIM and slowest < SLOWEST_LATENCY_AIM and ours / bare > POLLS_AIM
            and late / early < FLAT_AIM and failed == 0 and kilobytes < MEMORY_AIM)
