#!/usr/bin/env Rscript
# Matches of Pellion's results files: a table of sessions, a table of subjects, a trend picture.
#
#     Rscript matches.R --target 440 --picture trend.png FOLDER
#
# Needs nothing but R itself. README.md tells what the columns mean.
# SPDX-License-Identifier: GPL-3.0-or-later

# Names may hold any characters; without a locale R would know but the oldest hundred.
if (!l10n_info()[["UTF-8"]]) invisible(suppressWarnings(Sys.setlocale("LC_CTYPE", "C.UTF-8")))

header <- "filename\tnTrials\tfrequency matched (Hz)"
name_pattern <- "^(.*)_(practice|experiment)([0-9]{3,})[.]txt$"
# From the right: the name of a target may hold anything.
response_pattern <- "^(.*)\t([0-9]+)\t([0-9]+([.][0-9]+)?(e[+][0-9]+)?)$"
# Told apart also by those who see few colours.
colours <- c("#0072B2", "#E69F00", "#009E73", "#D55E00", "#CC79A7", "#56B4E9", "#000000")

complain <- function(...) cat("matches.R: ", ..., "\n", sep = "", file = stderr())

usage <- function(problem) {
    complain(problem)
    complain("usage: Rscript matches.R --target HZ [--picture FILE] PATH...")
    quit(status = 2)
}

# Returns the value of an option and the arguments without it.
take_option <- function(arguments, option) {
    position <- match(option, arguments)
    if (is.na(position)) return(list(value = NA, rest = arguments))
    list(value = arguments[position + 1], rest = arguments[-(position + 0:1)])
}

# Returns the files among the paths and the text files in the folders among them.
results_files <- function(paths) {
    unlist(lapply(paths, function(path) {
        if (!dir.exists(path)) return(path)
        list.files(path, pattern = "[.]txt$", full.names = TRUE)
    }))
}

# Returns the parts of a text that the groups of a pattern match; none where it does not match.
parts <- function(pattern, text) regmatches(text, regexec(pattern, text))[[1]][-1]

# Returns the session that a results file holds; stops where it is none.
read_session <- function(path) {
    name <- parts(name_pattern, basename(path))
    if (length(name) == 0) stop("the name is not that of a results file")
    if (!file.exists(path)) stop("there is no such file")
    lines <- readLines(path, warn = FALSE, encoding = "UTF-8")
    if (length(lines) == 0 || lines[1] != header)
        stop("the first line is not that of a results file")
    target <- ""
    hertz <- numeric(0)
    for (line in lines[-1]) {
        response <- parts(response_pattern, line)
        value <- as.numeric(response[3])
        if (length(response) == 0 || as.numeric(response[2]) != length(hertz) + 1 || value == 0)
            stop(sprintf("line %d is not response %d", length(hertz) + 2L, length(hertz) + 1L))
        target <- response[1]
        hertz <- c(hertz, value)
    }
    list(subject = enc2utf8(name[1]), session = name[2], number = as.integer(name[3]), target = target,
         hertz = hertz)
}

# Returns the sessions in order and whether every file was one.
read_sessions <- function(paths) {
    is_complete <- TRUE
    sessions <- list()
    for (path in results_files(paths)) {
        session <- tryCatch(read_session(path), error = function(problem) {
            complain(path, " is left out: ", conditionMessage(problem))
            NULL
        })
        if (is.null(session)) is_complete <- FALSE
        else sessions <- c(sessions, list(session))
    }
    field <- function(name) {
        vapply(sessions, function(session) session[[name]], sessions[[1]][[name]])
    }
    if (length(sessions) > 1)
        # In the order of the characters' codes, as in every locale.
        sessions <- sessions[order(field("subject"), field("session"), field("number"),
                                   method = "radix")]
    list(sessions = sessions, is_complete = is_complete)
}

cents <- function(hertz, target_hertz) 1200 * log2(hertz / target_hertz)

# Returns the mean and the standard deviation of a sample as texts, NA where there is none.
mean_and_deviation <- function(values) {
    c(if (length(values) > 0) sprintf("%.2f", mean(values)) else "NA",
      if (length(values) > 1) sprintf("%.2f", sd(values)) else "NA")
}

statistics_of <- function(hertz, target_hertz) {
    c(mean_and_deviation(hertz), mean_and_deviation(cents(hertz, target_hertz)))
}

print_row <- function(...) cat(paste(c(...), collapse = "\t"), "\n", sep = "")

print_sessions <- function(sessions, target_hertz) {
    print_row("subject", "session", "number", "target", "requests", "match_hz", "match_cents",
              "requests_mean_hz", "requests_sd_hz", "requests_mean_cents", "requests_sd_cents")
    for (session in sessions) {
        match <- tail(session$hertz, 1)
        match_texts <- if (length(match) == 0) c("NA", "NA")
                       else sprintf("%.2f", c(match, cents(match, target_hertz)))
        print_row(session$subject, session$session, session$number,
                  if (session$target == "") "NA" else session$target, length(session$hertz),
                  match_texts, statistics_of(session$hertz, target_hertz))
    }
}

print_matches <- function(sessions, target_hertz) {
    print_row("subject", "session", "matches", "match_mean_hz", "match_sd_hz",
              "match_mean_cents", "match_sd_cents")
    groups <- vapply(sessions, function(session) paste0(session$subject, "\t", session$session), "")
    for (group in unique(groups)) {
        matches <- unlist(lapply(sessions[groups == group],
                                 function(session) tail(session$hertz, 1)))
        print_row(group, length(matches), statistics_of(matches, target_hertz))
    }
}

# The requests of each session, with its match as a larger dot.
draw <- function(sessions, target_hertz, file) {
    sessions <- Filter(function(session) length(session$hertz) > 0, sessions)
    values <- c(unlist(lapply(sessions, function(session) session$hertz)), target_hertz)
    last <- max(2, vapply(sessions, function(session) length(session$hertz), 0L))
    png(file, width = 960, height = max(500, 100 + 20 * length(sessions)), res = 96)
    par(mar = c(4.5, 4.5, 2.5, 15), xpd = FALSE, las = 1)
    plot(NULL, xlim = c(0.5, last + 0.5), ylim = range(values) + c(-1, 1), xaxt = "n",
         xlab = "Request", ylab = "Frequency (Hz)", main = "Requests and matches")
    axis(1, at = intersect(pretty(c(1, last)), seq_len(last)))
    grid(nx = NA, ny = NULL)
    abline(h = target_hertz, lty = 2, col = "#444444")
    used <- rep_len(colours, length(sessions))
    for (i in seq_along(sessions)) {
        hertz <- sessions[[i]]$hertz
        lines(seq_along(hertz), hertz, col = used[i])
        points(seq_along(hertz), hertz, col = used[i], pch = 16,
               cex = ifelse(seq_along(hertz) == length(hertz), 1.5, 0.8))
    }
    names <- vapply(sessions, function(session)
        sprintf("%s %s %d", session$subject, session$session, session$number), "")
    par(xpd = NA)
    legend(par("usr")[2], par("usr")[4], bty = "n", cex = 0.85,
           legend = c(sprintf("target, %g Hz", target_hertz), names),
           lty = c(2, rep(1, length(sessions))), pch = c(NA, rep(16, length(sessions))),
           col = c("#444444", used))
    invisible(dev.off())
}

target <- take_option(commandArgs(trailingOnly = TRUE), "--target")
picture <- take_option(target$rest, "--picture")
target_hertz <- suppressWarnings(as.numeric(target$value))
if (is.na(target_hertz) || target_hertz <= 0 || is.infinite(target_hertz))
    usage("--target takes a frequency above 0")
if (length(picture$rest) == 0) usage("a results file or a folder of them is missing")

read <- read_sessions(picture$rest)
targets <- unique(unlist(lapply(read$sessions, function(session) session$target)))
if (length(setdiff(targets, "")) > 1)
    complain(sprintf("the sessions had several targets; cents refer to %g Hz in all of them",
                     target_hertz))
print_sessions(read$sessions, target_hertz)
cat("\n")
print_matches(read$sessions, target_hertz)
if (!is.na(picture$value)) draw(read$sessions, target_hertz, picture$value)
quit(status = if (length(read$sessions) > 0 && read$is_complete) 0 else 1)
