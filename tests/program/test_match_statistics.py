"""What bench/ makes of the results of matches: differences, intervals and ratios beside what is worked out by hand."""

import math
import random
import sys

import pytest
from conftest import PROJECT

sys.path.insert(0, str(PROJECT / "bench"))

# pylint: disable=wrong-import-position
from match_log import Tally  # noqa: E402
from match_statistics import (MOST, NORMALISED_ELO, UNSEEN, best_normalised, bounds, elo_interval,  # noqa: E402
                              elo_of, expected_games, llr, mean_and_variance, normalised_elo, score_of, shares,
                              verdict)
from uci_match import Pair  # noqa: E402

MIXED = (10, 100, 200, 130, 15)


@pytest.mark.parametrize("elo, score", [(0, 0.5), (190.8485, 0.75), (-190.8485, 0.25), (10, 0.514387)])
def test_elo_and_score_are_two_ways_to_say_it(elo, score):
    assert score_of(elo) == pytest.approx(score, abs=1e-6)
    assert elo_of(score) == pytest.approx(elo, abs=1e-2)


@pytest.mark.parametrize("score, elo", [(1.0, 1199.83), (0.0, -1199.83)])
def test_no_difference_is_infinite(score, elo):
    assert elo_of(score) == pytest.approx(elo, abs=0.01)


def test_the_interval_comes_from_the_spread_of_pairs():
    # Mean 1/2, variance 20 / 40 / 4: the error of the mean is 1.96 sqrt(0.125 / 40) = 0.10956.
    elo, low, high = elo_interval((10, 0, 20, 0, 10))
    assert (elo, low, high) == (0, pytest.approx(-77.39, abs=0.01), pytest.approx(77.39, abs=0.01))


def test_pairs_of_a_win_each_have_no_spread():
    assert elo_interval((0, 0, 50, 0, 0)) == (0, 0, 0)


def test_the_normalised_difference():
    # Mean 3/5, variance of pairs 3 / 50: 0.1 / sqrt(2 * 0.065) * 347.4356
    assert normalised_elo((0, 1, 1, 1, 1)) == pytest.approx(109.87, abs=0.01)  # as fastchess tells it, too
    assert normalised_elo((1, 0, 2, 0, 1)) == 0
    assert normalised_elo((0, 0, 3, 0, 0)) == 0
    assert normalised_elo((0, 0, 0, 0, 3)) == math.inf == -normalised_elo((3, 0, 0, 0, 0))


# Where all pairs are won or lost twice, a hypothesis says how likely it is that one is won: nothing else is open.


def of_two_outcomes(lost: int, won: int, zero: float, one: float) -> float:
    return won * math.log(one / zero) + lost * math.log((1 - one) / (1 - zero))


@pytest.mark.parametrize("elo0, elo1", [(0, 10), (-5, 5), (0, 50)])
def test_the_logistic_ratio_of_two_outcomes(elo0, elo1):
    expected = of_two_outcomes(300, 500, score_of(elo0), score_of(elo1))
    assert llr((300, 0, 0, 0, 500), elo0, elo1, "logistic") == pytest.approx(expected, rel=1e-4)


@pytest.mark.parametrize("elo0, elo1", [(0, 10), (-5, 5), (0, 50)])
def test_the_normalised_ratio_of_two_outcomes(elo0, elo1):
    # A mean p has the deviation sqrt(p (1 - p)), so p - 1/2 = t sqrt(p (1 - p)) gives p = 1/2 + t / sqrt(1 + t^2) / 2.
    def likely(elo: float) -> float:
        t = elo * math.log(10) / 800 * math.sqrt(2)
        return 0.5 + t / math.sqrt(1 + t * t) / 2

    expected = of_two_outcomes(300, 500, likely(elo0), likely(elo1))
    assert llr((300, 0, 0, 0, 500), elo0, elo1) == pytest.approx(expected, rel=1e-4)


def test_figures_worked_out_on_paper():
    assert llr((300, 0, 0, 0, 500), 0, 10, "logistic") == pytest.approx(5.425, abs=0.002)
    assert llr((300, 0, 0, 0, 500), 0, 10) == pytest.approx(7.476, abs=0.002)


def test_small_differences_follow_the_normal_distribution():
    # N (s1 - s0) (2 s - s0 - s1) / (2 variance): here s = 0.521978, variance 0.044847
    expected = 455 * 0.014387 * (2 * 0.521978 - 1 - 0.014387) / (2 * 0.044847)
    assert llr(MIXED, 0, 10, "logistic") == pytest.approx(expected, rel=0.05)
    t = normalised_elo(MIXED) * math.log(10) / 800 * math.sqrt(2)
    one = 10 * math.log(10) / 800 * math.sqrt(2)
    assert llr(MIXED, 0, 10) == pytest.approx(455 * one * (2 * t - one) / 2, rel=0.05)


@pytest.mark.parametrize("model", ["logistic", "normalised"])
def test_the_other_side_sees_the_opposite(model):
    assert llr(MIXED, 0, 10, model) == pytest.approx(-llr(MIXED[::-1], -10, 0, model), abs=1e-6)


@pytest.mark.parametrize("model", ["logistic", "normalised"])
@pytest.mark.parametrize("counts, sign", [((0, 0, 0, 0, 0), 0), ((0, 0, 0, 0, 40), 1), ((40, 0, 0, 0, 0), -1),
                                          ((0, 0, 40, 0, 0), -1), ((0, 1, 0, 0, 0), -1)])
def test_outcomes_that_never_came_leave_the_ratio_finite(model, counts, sign):
    ratio = llr(counts, 0, 10, model)
    assert math.isfinite(ratio) and (ratio > 0) - (ratio < 0) == sign


@pytest.mark.parametrize("elo", [-MOST, -10, 10, MOST])
def test_the_likeliest_distribution_has_the_difference(elo):
    dice = random.Random(1)
    for _ in range(100):
        counts = [int(dice.expovariate(1 / dice.choice([0.3, 3, 30, 1000]))) or UNSEEN for _ in range(5)]
        found = best_normalised(shares(counts), elo)
        mean, variance = mean_and_variance(found)
        assert sum(found) == pytest.approx(1)
        assert (mean - 0.5) / math.sqrt(2 * variance) * NORMALISED_ELO == pytest.approx(elo, rel=1e-4), counts


def test_verdicts_come_at_the_bounds():
    assert bounds(0.05, 0.05) == (pytest.approx(-2.944439), pytest.approx(2.944439))
    assert bounds(0.1, 0.01) == (pytest.approx(-4.499810), pytest.approx(2.292535))
    assert [verdict(ratio, 0.05, 0.05) for ratio in (-2.95, -2.94, 2.94, 2.95)] == ["H0", "", "", "H1"]


def test_how_many_games_a_verdict_takes():
    # Half-way between the bounds: 2 * 2.944439^2 / 0.0407037^2. At either: 2 * 0.9 * 2.944439 / (0.0407037^2 / 2).
    assert expected_games(5, 0, 10, 0.05, 0.05) == pytest.approx(10465.7, rel=1e-4)
    assert expected_games(10, 0, 10, 0.05, 0.05) == pytest.approx(6397.9, rel=1e-4)
    assert expected_games(0, 0, 10, 0.05, 0.05) == pytest.approx(6397.9, rel=1e-4)
    assert expected_games(5.00001, 0, 10, 0.05, 0.05) == pytest.approx(10465.7, rel=1e-4)


def test_a_tally_counts_pairs_games_and_faults():
    tally = Tally()
    for points, ends in (((1, 1), ("checkmate", "time")), ((1, 0.5), ("illegal", "material")),
                         ((0, 1), ("crash", "checkmate")), ((0, 0.5), ("time", "too long")),
                         ((0, 0), ("checkmate", "checkmate"))):
        tally.add(Pair(1, points, ends))
    assert tally.counts == [1, 1, 1, 1, 1]
    assert tally.score() == "4 won, 2 drawn, 4 lost"
    assert tally.told_faults("a", "b") == "time forfeits: a 1, b 1; illegal moves: a 0, b 1; crashes: a 1, b 0"
