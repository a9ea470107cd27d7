"""What the results of a match say: the difference in Elo with its interval, and the sequential probability ratio test.

Two games from one opening, with colours changed, are one trial: an unbalanced opening gives each side a win, so the
games of a pair are not independent, the pairs are. A pair brings 0, 1/2, 1, 3/2 or 2 points; `counts` are the numbers
of such pairs in this order (pentanomial statistics), seen from the new engine. Scores below are a pair's points
divided by two: the mean of its games.

The test compares two hypotheses, "the difference is elo0" and "it is elo1", by the logarithm of the ratio of their
likelihoods (LLR). Neither says how often a pair ends in which way, so each is taken with the distribution that fits
the results best among those it allows (a generalised ratio test). The difference is told by one of two models:

- logistic: the ordinary Elo, 400 log10(s / (1 - s)) for a mean score s;
- normalised: (s - 1/2) / sigma times 800 / ln 10, where sigma is the standard deviation of a single game's result as
  the pairs give it. With it, the number of games that a difference needs does not depend on how many are drawn. Where
  pairs are as spread as independent games without a draw, both models tell nearly the same figure; the more draws,
  the larger the normalised one.

As a program it prints how many games bench/sprt may be expected to need.
"""

import math
from collections.abc import Callable, Sequence

SCORES = (0.0, 0.25, 0.5, 0.75, 1.0)
MODELS = ("normalised", "logistic")
NORMALISED_ELO = 800 / math.log(10)  # of a mean score one standard deviation of a game above 1/2
LIKELY = 1.959964  # standard deviations that hold a normal variable 19 times out of 20
MOST = 200  # Elo of a hypothesis either way: beyond it best_normalised would not settle
UNSEEN = 1e-3  # stands for a count of none, so that every outcome stays possible

Distribution = Sequence[float]  # how likely each of SCORES is


def score_of(elo: float) -> float:
    return 1 / (1 + 10 ** (-elo / 400))


def elo_of(score: float) -> float:
    """The logistic difference; one beyond every bound is told as that of 1 in 1000."""
    score = min(max(score, 0.001), 0.999)
    return 400 * math.log10(score / (1 - score))


def mean_and_variance(likely: Distribution, scores: Sequence[float] = SCORES) -> tuple[float, float]:
    mean = sum(p * score for p, score in zip(likely, scores))
    return mean, sum(p * (score - mean) ** 2 for p, score in zip(likely, scores))


def shares(counts: Sequence[float]) -> list[float]:
    return [count / sum(counts) for count in counts]


def elo_interval(counts: Sequence[int]) -> tuple[float, float, float]:
    """The difference, and the interval that holds the true one 19 times out of 20."""
    mean, variance = mean_and_variance(shares(counts))
    error = LIKELY * math.sqrt(variance / sum(counts))
    return elo_of(mean), elo_of(mean - error), elo_of(mean + error)


def normalised_elo(counts: Sequence[int]) -> float:
    """The normalised difference; that of results without any spread is infinite, or 0."""
    mean, variance = mean_and_variance(shares(counts))
    if variance == 0:
        return 0.0 if mean == 0.5 else math.copysign(math.inf, mean - 0.5)
    return (mean - 0.5) / math.sqrt(2 * variance) * NORMALISED_ELO


def root(function: Callable[[float], float], low: float, high: float) -> float:
    """Where a falling function is nought."""
    for _ in range(200):
        middle = (low + high) / 2
        if middle in (low, high):
            break
        if function(middle) > 0:
            low = middle
        else:
            high = middle
    return (low + high) / 2


def tilted(likely: Distribution, values: Sequence[float]) -> list[float]:
    """The distribution under which `values` have the mean 0, nearest to `likely`. Some values are above 0, some below.

    It is p / (1 + x value) with that x which makes the mean 0 (Lagrange's rule for the greatest likelihood)."""
    edge = 1e-12
    low, high = -1 / max(values) * (1 - edge), -1 / min(values) * (1 - edge)
    x = root(lambda x: sum(p * value / (1 + x * value) for p, value in zip(likely, values)), low, high)
    return [p / (1 + x * value) for p, value in zip(likely, values)]


def best_logistic(likely: Distribution, elo: float) -> list[float]:
    """The likeliest distribution with this difference."""
    wanted = score_of(elo)
    return tilted(likely, [score - wanted for score in SCORES])


def best_normalised(likely: Distribution, elo: float) -> list[float]:
    """The same for the normalised difference. Mean and deviation both depend on the answer: it is found step by step,
    each taking the condition (mean - 1/2 = t sigma) as straight near the distribution before."""
    wanted = elo / NORMALISED_ELO * math.sqrt(2)  # in deviations of a pair's score
    best = [1 / len(SCORES)] * len(SCORES)
    for _ in range(30):
        mean, variance = mean_and_variance(best)
        sigma = math.sqrt(variance)
        values = [score - 0.5 - wanted * sigma * (1 + ((score - mean) / sigma) ** 2) / 2 for score in SCORES]
        before, best = best, tilted(likely, values)
        if max(abs(one - other) for one, other in zip(before, best)) < 1e-10:
            break
    return best


def llr(counts: Sequence[int], elo0: float, elo1: float, model: str = "normalised") -> float:
    """How much likelier elo1 makes the results than elo0 does, as a natural logarithm."""
    if sum(counts) == 0:
        return 0.0
    likely = shares([count or UNSEEN for count in counts])
    best = best_normalised if model == "normalised" else best_logistic
    zero, one = best(likely, elo0), best(likely, elo1)
    return sum(counts) * sum(p * math.log(q1 / q0) for p, q0, q1 in zip(likely, zero, one))


def bounds(alpha: float, beta: float) -> tuple[float, float]:
    """The LLR at which elo0 holds, and the one at which elo1 does; alpha and beta are how often each is wrong."""
    return math.log(beta / (1 - alpha)), math.log((1 - beta) / alpha)


def verdict(ratio: float, alpha: float, beta: float) -> str:
    """"H1" (the new engine is better), "H0" (it is not), or nothing yet."""
    low, high = bounds(alpha, beta)
    return "H1" if ratio >= high else "H0" if ratio <= low else ""


def expected_games(elo: float, elo0: float, elo1: float, alpha: float, beta: float) -> float:
    """How many games the test takes on average when the normalised difference is `elo`: Wald's formula for a sum that
    drifts like the ratio of two normal distributions."""
    low, high = bounds(alpha, beta)
    t, t0, t1 = (value / NORMALISED_ELO * math.sqrt(2) for value in (elo, elo0, elo1))
    drift, variance = (t1 - t0) * (2 * t - t0 - t1) / 2, (t1 - t0) ** 2
    if abs(drift) < 1e-9:
        return -2 * low * high / variance
    slope = -2 * drift / variance
    upward = (1 - math.exp(slope * low)) / (math.exp(slope * high) - math.exp(slope * low))
    return 2 * (upward * high + (1 - upward) * low) / drift


def main() -> None:
    print("difference (normalised Elo)  games to expect for [0, 10]")
    for elo in (-50, -20, 0, 5, 10, 20, 50, 100):
        print(f"{elo:27} {expected_games(elo, 0, 10, 0.05, 0.05):24,.0f}")


if __name__ == "__main__":
    main()
