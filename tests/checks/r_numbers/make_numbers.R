# Makes the data and the numbers of this folder: one small design of each kind of scale, estimated by
# programs of another kind.  README.md tells the versions that were used.  Not run by ./test.
#
#   cd tests/checks/r_numbers && Rscript make_numbers.R
#
# Joint (unconditional) maximum likelihood is what `glm` and VGAM's adjacent-category family maximise
# when no element is extreme.  Constraints as the program's: the first Flank floats, every other is
# centered, thresholds of a scale sum to 0.  The first Flank adds its measure, the others subtract.
#
# Each design gives DESIGN-data.txt, lines "element of Flank 1,element of Flank 2,...,category", and
# DESIGN-numbers.txt with lines "measure,flank,element,value", "threshold,scale,category,value" and
# "discrimination,scale,0,value".
suppressMessages(library(VGAM))

# Every combination of the elements.
combinations <- function(sizes) {
  names(sizes) <- c("person", "item", "rater")[seq_along(sizes)]
  rev(expand.grid(rev(lapply(sizes, seq_len))))
}

# B of each row, from measures drawn for each Flank.
drawMeasures <- function(d, spreads) {
  B <- 0
  for (f in seq_along(d)) {
    measures <- rnorm(max(d[[f]]), 0, spreads[f])
    B <- B + (if (f == 1) 1 else -1) * (measures - (f > 1) * mean(measures))[d[[f]]]
  }
  B
}

# Draws again until no element is extreme; `top` is a number, or `max` for the largest count.
withoutExtremes <- function(d, top, draw) {
  repeat {
    y <- draw()
    largest <- if (is.function(top)) top(y) else top
    inside <- function(f) {
      score <- tapply(y, d[[f]], sum)
      all(score > 0 & score < largest * tapply(y, d[[f]], length))
    }
    if (all(sapply(names(d), inside))) return(y)
  }
}

write <- function(design, d, y, lines) {
  writeLines(do.call(paste, c(d, list(y), sep = ",")), paste0(design, "-data.txt"))
  writeLines(lines, paste0(design, "-numbers.txt"))
}

line <- function(what, row, cell, value) sprintf("%s,%d,%d,%.7f", what, row, cell, value)

# The lines of the measures, from what each Flank adds to B.
measureLines <- function(effects) {
  lines <- c()
  for (f in seq_along(effects)) {
    sign <- if (f == 1) 1 else -1
    lines <- c(lines, line("measure", f, seq_along(effects[[f]]), sign * effects[[f]]))
  }
  lines
}

# What each Flank adds, from sum contrasts: the last is less the sum of the others.
contrastEffects <- function(coefficients, name) {
  own <- coefficients[grep(paste0("^", name, "[0-9]+$"), names(coefficients))]
  c(own, -sum(own))
}

factors <- function(d) {
  d[] <- lapply(d, factor)
  for (f in names(d)) contrasts(d[[f]]) <- contr.sum(nlevels(d[[f]]))
  d
}

exact <- list(epsilon = 1e-13, maxit = 100)

# glm: persons with their own intercept, the others in sum contrasts.
byGlm <- function(design, d, y, response, family) {
  x <- factors(d)
  terms <- paste("~ 0 + person +", paste(names(d)[-1], collapse = " + "))
  x$response <- response
  fit <- glm(as.formula(paste("response", terms)), family = family, data = x,
             control = do.call(glm.control, exact))
  stopifnot(fit$converged)
  coefficients <- coef(fit)
  effects <- list(coefficients[seq_len(nlevels(x$person))])
  for (f in names(d)[-1]) effects <- c(effects, list(contrastEffects(coefficients, f)))
  write(design, d, y, measureLines(effects))
}

set.seed(20261)
d <- combinations(c(24, 10))
y <- withoutExtremes(d, 1, function() rbinom(nrow(d), 1, plogis(drawMeasures(d, c(.8, .8)))))
byGlm("dichotomy", d, y, y, binomial())

d <- combinations(c(20, 4, 3))
y <- withoutExtremes(d, 5, function() rbinom(nrow(d), 5, plogis(drawMeasures(d, c(1, .6, .4)))))
byGlm("binomial", d, y, cbind(y, 5 - y), binomial())

d <- combinations(c(20, 5))
y <- withoutExtremes(d, max, function() rpois(nrow(d), exp(.8 + drawMeasures(d, c(.5, .4)))))
byGlm("poisson", d, y, y, poisson())

# Adjacent categories: eta(k) = ln(P(k) / P(k-1)).
drawCategories <- function(B, thresholds) {
  vapply(seq_along(B), function(i) {
    r <- c(0, cumsum(B[i] - thresholds[i, ]))
    sample(0:ncol(thresholds), 1, prob = exp(r - max(r)))
  }, 0)
}

tight <- vglm.control(epsilon = 1e-13, maxit = 100)

# Rating scale: eta(k) = a(k) + person + item + rater, so a(k) = mean person - T(k).
d <- combinations(c(20, 4, 3))
y <- withoutExtremes(d, 3, function() drawCategories(
  drawMeasures(d, c(1, .5, .4)), matrix(c(-1.4, -.1, 1.5), nrow(d), 3, byrow = TRUE)))
x <- factors(d)
x$y <- ordered(y)
fit <- vglm(y ~ person + item + rater, acat(parallel = TRUE), data = x, control = tight)
coefficients <- coef(fit)
a <- coefficients[grep("Intercept", names(coefficients))]
effects <- lapply(names(d), function(f) contrastEffects(coefficients, f))
effects[[1]] <- effects[[1]] + mean(a)
write("rating", d, y, c(measureLines(effects), line("threshold", 1, 1:3, mean(a) - a)))

# Partial credit: eta(k) = a(k) + item(k) + person, so each item has its own a(k).
d <- combinations(c(40, 5))
own <- matrix(rnorm(15, rep(c(-.9, 0, .9), each = 5), .3), 5, 3)
repeat {
  y <- withoutExtremes(d, 3, function() drawCategories(drawMeasures(d, c(1, .5)), own[d$item, ]))
  if (all(table(d$item, y) > 0)) break
}
x <- factors(d)
x$y <- ordered(y)
fit <- vglm(y ~ person + item, acat(parallel = TRUE ~ person - 1), data = x, control = tight)
b <- coef(fit, matrix = TRUE)  # a row for each term, a column for each step
steps <- sapply(1:3, function(k) b["(Intercept)", k] +
                  c(b[grep("^item", rownames(b)), k], -sum(b[grep("^item", rownames(b)), k])))
effects <- list(contrastEffects(b[, 1], "person") + mean(steps), rowMeans(steps) - mean(steps))
thresholds <- rowMeans(steps) - steps
lines <- measureLines(effects)
for (item in 1:5) lines <- c(lines, line("threshold", item, 1:3, thresholds[item, ]))
write("partial-credit", d, y, lines)

# An estimated discrimination: eta(k) = B - c ln(k / (m - k + 1)), with the constraint that the
# intercepts are a level and c times these logs.
m <- 5
logs <- log(1:m / (m:1))
d <- combinations(c(30, 6))
y <- withoutExtremes(d, m, function() drawCategories(
  drawMeasures(d, c(.8, .6)), .6 * matrix(logs, nrow(d), m, byrow = TRUE)))
x <- factors(d)
x$y <- ordered(y)
same <- matrix(1, m, 1)
fit <- vglm(y ~ person + item, acat(), data = x, control = tight,
            constraints = list("(Intercept)" = cbind(1, -logs), person = same, item = same))
coefficients <- coef(fit)
effects <- lapply(names(d), function(f) contrastEffects(coefficients, f))
effects[[1]] <- effects[[1]] + coefficients["(Intercept):1"]
write("binomial-discrimination", d, y,
      c(measureLines(effects), line("discrimination", 1, 0, coefficients["(Intercept):2"])))

# The multinomial likelihood of any scale by its Poisson form: a cell for each observation and
# possible category, a level for each observation.  `terms` gives what multiplies each further
# parameter in the exponent of category k.
byCells <- function(d, y, categories, terms) {
  cells <- expand.grid(k = categories, observation = seq_len(nrow(d)))
  count <- as.numeric(cells$k == y[cells$observation])
  rows <- d[cells$observation, ]
  persons <- max(d$person)
  items <- max(d$item)
  columns <- cbind(
    sapply(seq_len(persons), function(p) cells$k * (rows$person == p)),
    sapply(seq_len(items - 1), function(i) cells$k * ((rows$item == i) - (rows$item == items))),
    terms(cells$k))
  fit <- glm(count ~ 0 + factor(cells$observation) + columns, family = poisson(),
             control = do.call(glm.control, exact))
  stopifnot(fit$converged)
  b <- unname(coef(fit))[-seq_len(nrow(d))]
  items <- b[persons + seq_len(items - 1)]
  list(effects = list(b[seq_len(persons)], c(items, -sum(items))),
       further = b[-seq_len(persons + length(items))])
}

# Counts to n with an estimated discrimination: ln P(k) = const + k B - c ln k!.
d <- combinations(c(16, 5))
y <- withoutExtremes(d, max, function() drawCategories(
  drawMeasures(d, c(.6, .4)) + .6, .8 * matrix(log(1:20), nrow(d), 20, byrow = TRUE)))
n <- if (max(y) < 5) 10 else 2 * max(y)
fit <- byCells(d, y, 0:n, function(k) -lfactorial(k))
write("poisson-discrimination", d, y,
      c(measureLines(fit$effects), line("discrimination", 1, 0, fit$further)))

# Kept categories: nobody uses category 2 of 0 to 4, which has no threshold.
d <- combinations(c(24, 6))
kept <- c(0, 1, 3, 4)
y <- withoutExtremes(d, 4, function() kept[1 + drawCategories(
  drawMeasures(d, c(.8, .5)), matrix(c(-1, .2, .8), nrow(d), 3, byrow = TRUE))])
# T(1) and T(3); T(4) is less their sum.
fit <- byCells(d, y, kept, function(k) cbind((k >= 4) - (k >= 1), (k >= 4) - (k >= 3)))
t <- fit$further
write("kept", d, y, c(measureLines(fit$effects), line("threshold", 1, c(1, 3, 4), c(t, -sum(t)))))
