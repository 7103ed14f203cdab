#!/usr/bin/env Rscript
# Matches from Pellion's results files: tables of sessions, matches and requests, and a picture.
#
#     Rscript matches.R --target 440 --picture trend.png FOLDER
#
# Needs only R itself. README.md explains options and columns. A session of R can source() this
# file: analyse() returns the tables as data frames.
# SPDX-License-Identifier: GPL-3.0-or-later

header <- "filename\tnTrials\tfrequency matched (Hz)"
# The name that the program proposes, or that of a journal, which the session's start follows.
name_pattern <- paste0("^(.*)_(practice|experiment)([0-9]{3,})",
                       "(-[0-9]{8}-[0-9]{6}(-[0-9]+)?)?[.]txt$")
# Lines are read from the right: the name of a target may contain separators.
response_pattern <- "^(.*)\t([0-9]+)\t([0-9]+([.][0-9]+)?(e[+][0-9]+)?)$"
target_pattern <- "^(.*)[\t;] *([0-9]+([.,][0-9]+)?) *$"
# Digits before the last comma would be those of a number with a decimal comma.
comma_target_pattern <- "^((.*,)?[^,]*[^0-9,][^,]*), *([0-9]+([.][0-9]+)?) *$"
target_header <- "^\"?file\"?[\t;,] *\"?hz\"? *$"
# A match this close to a whole number of octaves from the target is an octave error.
octave_cents <- 100
# Distinguishable with deficient colour vision.
colours <- c("#0072B2", "#E69F00", "#009E73", "#D55E00", "#CC79A7", "#56B4E9", "#000000")
# Read from files, not computed: printed with all their digits.
exact_columns <- c("target_hz", "frequency_hz")

report <- function(...) message("matches.R: ", ...)

# Reading -----------------------------------------------------------------------------------------

# Returns the files among the paths and the text files in the folders among them, each once.
results_files <- function(paths) {
    files <- unlist(lapply(paths, function(path) {
        if (!dir.exists(path)) return(path)
        # Not by a pattern, which passes over names that are not UTF-8.
        names <- list.files(path, all.files = TRUE)
        names <- names[endsWith(names, ".txt")]
        # In the order of the characters' codes, as in every locale.
        names <- sort(enc2utf8(names), method = "radix")
        if (length(names) > 0) file.path(sub("/+$", "", path), names)
    }))
    files[!duplicated(normalizePath(as.character(files), mustWork = FALSE))]
}

# Returns the parts of a text that the groups of a pattern match; none where it does not match.
parts <- function(pattern, text) regmatches(text, regexec(pattern, text))[[1]][-1]

# Returns the content of a text file; stops with the reason where it cannot.
read_text <- function(path) {
    if (dir.exists(path)) stop("it is a folder")
    if (!file.exists(path)) stop("there is no such file")
    cannot_be_read <- function(condition) stop("it cannot be read")
    content <- tryCatch(readBin(path, "raw", file.size(path)), warning = cannot_be_read,
                        error = cannot_be_read)
    if (any(content == 0)) stop("it contains NUL bytes")
    text <- rawToChar(content)
    if (!validUTF8(text)) stop("it is not UTF-8 text")
    Encoding(text) <- "UTF-8"
    text
}

# Returns the lines of a text without the empty ones at its end.
lines_of <- function(text) strsplit(sub("[\r\n]+$", "", text), "\r\n|\r|\n")[[1]]

# Returns the session in a results file; stops where it is not one.
read_session <- function(path) {
    file <- enc2utf8(basename(path))
    name <- if (validUTF8(file)) parts(name_pattern, file)
    if (length(name) == 0) stop("the name is not that of a results file")
    text <- read_text(path)
    lines <- lines_of(text)
    if (length(lines) == 0 || lines[1] != header)
        stop("the first line is not that of a results file")
    target <- NA_character_
    hertz <- numeric(0)
    for (line in lines[-1]) {
        response <- parts(response_pattern, line)
        order <- length(hertz) + 1L
        value <- as.numeric(response[3])
        if (length(response) == 0 || as.numeric(response[2]) != order || value == 0 ||
            is.infinite(value))
            stop(sprintf("line %d is not response %d", order + 1L, order))
        if (!is.na(target) && target != response[1])
            stop(sprintf("line %d names another target", order + 1L))
        target <- response[1]
        hertz <- c(hertz, value)
    }
    if (!grepl("[\r\n]$", text))
        stop(sprintf("line %d has no line end and may be cut off", length(lines)))
    list(path = path, file = file, subject = name[1], session = name[2],
         number = as.numeric(name[3]), target = target, hertz = hertz, target_hz = NA_real_)
}

# Returns the sessions in order and whether every file was one, and each another one.
read_sessions <- function(paths) {
    is_complete <- TRUE
    sessions <- list()
    for (path in results_files(paths)) {
        session <- tryCatch(read_session(path), error = function(problem) {
            report(path, " is left out: ", conditionMessage(problem))
            NULL
        })
        if (is.null(session)) is_complete <- FALSE
        else sessions <- c(sessions, list(session))
    }
    if (length(sessions) > 1)
        sessions <- sessions[order(texts(sessions, "subject"), texts(sessions, "session"),
                                   numbers(sessions, "number"), method = "radix")]
    for (i in seq_along(sessions)[-1]) {
        one <- sessions[[i - 1]]
        other <- sessions[[i]]
        if (!identical(one[c("subject", "session", "number")],
                       other[c("subject", "session", "number")])) next
        report(one$path, " and ", other$path,
               sprintf(" are both %s %.0f of %s; the tables contain both", one$session, one$number,
                       one$subject))
        is_complete <- FALSE
    }
    list(sessions = sessions, is_complete = is_complete)
}

texts <- function(sessions, field) vapply(sessions, `[[`, "", field)
numbers <- function(sessions, field) vapply(sessions, `[[`, 0, field)

# Returns the frequencies in a table of targets, named by file; stops where it is not one.
read_targets <- function(path) {
    targets <- numeric(0)
    lines <- lines_of(sub("^\ufeff", "", read_text(path)))
    for (number in seq_along(lines)) {
        line <- lines[number]
        if (line == "" || number == 1 && grepl(target_header, line, ignore.case = TRUE)) next
        fields <- parts(target_pattern, line)
        if (length(fields) == 0) fields <- parts(comma_target_pattern, line)[-2]
        hertz <- as.numeric(sub(",", ".", fields[2], fixed = TRUE))
        if (is.na(hertz) || hertz == 0 || is.infinite(hertz))
            stop(sprintf("line %d is not a file name and a frequency above 0", number))
        file <- fields[1]
        if (grepl("^\".*\"$", file))
            file <- gsub("\"\"", "\"", substr(file, 2, nchar(file) - 1), fixed = TRUE)
        known <- targets[match(file, names(targets))]
        if (!is.na(known) && known != hertz)
            stop(sprintf("line %d gives %s another frequency", number, file))
        if (is.na(known)) targets <- c(targets, setNames(hertz, file))
    }
    targets
}

# Gives the sessions their targets' frequencies; returns them and whether every target has one.
assign_targets <- function(sessions, target_hz, targets) {
    used <- unique(texts(sessions, "target"))
    missing <- sort(setdiff(used[!is.na(used)], names(targets)), method = "radix")
    sessions <- lapply(sessions, function(session) {
        known <- targets[match(session$target, names(targets))]
        if (length(session$hertz) > 0)
            session$target_hz <- if (is.na(known)) target_hz else unname(known)
        session
    })
    if (is.na(target_hz)) {
        for (name in missing)
            report(name, " is not in the table of targets: its sessions have no cents")
    } else if (length(missing) > 1) {
        report(sprintf("cents refer to %g Hz for several targets: ", target_hz),
               paste(missing, collapse = ", "))
    }
    list(sessions = sessions, is_complete = !is.na(target_hz) || length(missing) == 0)
}

# Computing ---------------------------------------------------------------------------------------

cents <- function(hertz, target_hz) 1200 * log2(hertz / target_hz)

# Returns the whole octaves by which matches miss the target; 0 where they are near none.
octave_shift <- function(match_cents) {
    octaves <- round(match_cents / 1200)
    as.integer(ifelse(abs(match_cents - 1200 * octaves) <= octave_cents, octaves, 0))
}

# Returns where the last other frequency before the match was.
approached_from <- function(hertz) {
    match <- last(hertz)
    others <- hertz[hertz != match]
    if (length(others) == 0) return(NA_character_)
    if (last(others) > match) "above" else "below"
}

# Returns the width of a step of 1 Hz around a frequency.
grid_cents <- function(hertz) {
    if (is.na(hertz) || hertz <= 0.5) NA_real_ else 1200 * log2((hertz + 0.5) / (hertz - 0.5))
}

# NA where there is none.
last <- function(values) if (length(values) > 0) values[length(values)] else values[NA_integer_]
average <- function(values) if (length(values) > 0) mean(values) else NA_real_

sessions_table <- function(sessions) {
    each <- function(of, what) vapply(sessions, function(session) as.numeric(of(what(session))), 0)
    hertz <- function(session) session$hertz
    in_cents <- function(session) cents(session$hertz, session$target_hz)
    match_cents <- each(last, in_cents)
    data.frame(
        subject = texts(sessions, "subject"), session = texts(sessions, "session"),
        number = numbers(sessions, "number"), target = texts(sessions, "target"),
        requests = each(length, hertz), match_hz = each(last, hertz), match_cents = match_cents,
        requests_mean_hz = each(average, hertz), requests_sd_hz = each(sd, hertz),
        requests_mean_cents = each(average, in_cents), requests_sd_cents = each(sd, in_cents),
        target_hz = numbers(sessions, "target_hz"), octave_shift = octave_shift(match_cents),
        residual_cents = match_cents - 1200 * octave_shift(match_cents),
        approached_from = vapply(sessions, function(session) approached_from(session$hertz), ""),
        grid_cents = each(grid_cents, function(session) last(session$hertz)),
        file = texts(sessions, "file"), stringsAsFactors = FALSE)
}

# Returns a row for each subject and session type of the table of sessions.
matches_table <- function(table) {
    key <- function(rows) sprintf("%s\t%s", rows$subject, rows$session)
    of_group <- function(statistic) {
        vapply(unique(key(table)), function(group) {
            as.numeric(statistic(table[key(table) == group & table$requests > 0, ]))
        }, 0, USE.NAMES = FALSE)
    }
    # Hertz of different targets have no common mean.
    hertz <- function(rows) if (length(unique(rows$target_hz)) == 1) rows$match_hz else numeric(0)
    groups <- table[!duplicated(key(table)), c("subject", "session")]
    data.frame(
        groups, matches = of_group(nrow),
        match_mean_hz = of_group(function(rows) average(hertz(rows))),
        match_sd_hz = of_group(function(rows) sd(hertz(rows))),
        match_mean_cents = of_group(function(rows) average(rows$match_cents)),
        match_sd_cents = of_group(function(rows) sd(rows$match_cents)),
        octave_errors = of_group(function(rows) sum(rows$octave_shift != 0)),
        residual_mean_cents = of_group(function(rows) average(rows$residual_cents)),
        residual_sd_cents = of_group(function(rows) sd(rows$residual_cents)),
        row.names = NULL, stringsAsFactors = FALSE)
}

requests_table <- function(sessions) {
    counts <- vapply(sessions, function(session) length(session$hertz), 0L)
    hertz <- as.numeric(unlist(lapply(sessions, `[[`, "hertz")))
    target_hz <- rep(numbers(sessions, "target_hz"), counts)
    data.frame(
        subject = rep(texts(sessions, "subject"), counts),
        session = rep(texts(sessions, "session"), counts),
        number = rep(numbers(sessions, "number"), counts), request = sequence(counts),
        target = rep(texts(sessions, "target"), counts), target_hz = target_hz,
        frequency_hz = hertz, cents = cents(hertz, target_hz),
        file = rep(texts(sessions, "file"), counts), stringsAsFactors = FALSE)
}

# Returns the tables for results files and folders of them. targets holds frequencies (Hz), named by
# file; target_hz is that of all other targets.
analyse <- function(paths, target_hz = NA_real_, targets = numeric(0)) {
    read <- read_sessions(paths)
    assigned <- assign_targets(read$sessions, target_hz, targets)
    sessions <- sessions_table(assigned$sessions)
    list(sessions = sessions, matches = matches_table(sessions),
         requests = requests_table(assigned$sessions), files = assigned$sessions,
         is_complete = read$is_complete && assigned$is_complete)
}

# Writing -----------------------------------------------------------------------------------------

count_columns <- c("number", "request", "requests", "matches", "octave_shift", "octave_errors")

table_lines <- function(table, options) {
    separator <- if (options$decimal_comma) ";" else "\t"
    cells <- lapply(names(table), function(name) cells_of(name, table[[name]], options))
    c(paste(names(table), collapse = separator),
      if (nrow(table) > 0) do.call(paste, c(cells, sep = separator)))
}

cells_of <- function(column, values, options) {
    if (is.character(values)) {
        is_plain <- !grepl("[\";\t\r\n]", values)
        text <- ifelse(is_plain, values,
                       paste0("\"", gsub("\"", "\"\"", values, fixed = TRUE), "\""))
    } else if (column %in% count_columns) {
        text <- sprintf("%.0f", values)
    } else {
        text <- if (column %in% exact_columns) sprintf("%.15g", values)
                else sprintf("%.*f", options$digits, values)
        if (options$decimal_comma) text <- sub(".", ",", text, fixed = TRUE)
    }
    ifelse(is.na(values), "NA", text)
}

# Writes the byte order mark by which spreadsheets recognise UTF-8.
write_mark <- function(options, file) {
    if (options$decimal_comma) writeLines("\ufeff", file, sep = "", useBytes = TRUE)
}

# Writes a table in UTF-8, whatever the locale.
write_table <- function(table, options, file) {
    writeLines(enc2utf8(table_lines(table, options)), file, useBytes = TRUE)
}

# The requests of a subject's sessions, the match of each as a larger dot.
draw_panel <- function(sessions) {
    targets <- sort(unique(numbers(sessions, "target_hz")))
    values <- c(unlist(lapply(sessions, `[[`, "hertz")), targets)
    last_request <- max(2, vapply(sessions, function(session) length(session$hertz), 0L))
    par(mar = c(4.5, 4.5, 2.5, 15), xpd = FALSE, las = 1)
    plot(NULL, xlim = c(0.5, last_request + 0.5), ylim = range(values) + c(-1, 1), xaxt = "n",
         xlab = "Request", ylab = "Frequency (Hz)",
         main = paste("Requests and matches:", sessions[[1]]$subject))
    axis(1, at = intersect(pretty(c(1, last_request)), seq_len(last_request)))
    grid(nx = NA, ny = NULL)
    abline(h = targets, lty = 2, col = "#444444")
    used <- rep_len(colours, length(sessions))
    for (i in seq_along(sessions)) {
        hertz <- sessions[[i]]$hertz
        lines(seq_along(hertz), hertz, col = used[i])
        points(seq_along(hertz), hertz, col = used[i], pch = 16,
               cex = ifelse(seq_along(hertz) == length(hertz), 1.5, 0.8))
    }
    names <- sprintf("%s %.0f", texts(sessions, "session"), numbers(sessions, "number"))
    is_target <- rep(c(TRUE, FALSE), c(length(targets), length(sessions)))
    par(xpd = NA)
    legend(par("usr")[2], par("usr")[4], bty = "n", cex = 0.85,
           legend = c(if (length(targets) > 0) sprintf("target, %g Hz", targets), names),
           lty = ifelse(is_target, 2, 1), pch = ifelse(is_target, NA, 16),
           col = c(rep("#444444", length(targets)), used))
}

# Draws a PNG picture with a panel for each subject, one below the other, in as many columns as the
# format's limited height takes.
draw <- function(sessions, file) {
    sessions <- Filter(function(session) length(session$hertz) > 0, sessions)
    subjects <- texts(sessions, "subject")
    panels <- length(unique(subjects))
    height <- max(500, 120 + 20 * table(subjects))
    columns <- ceiling(panels * height / 30000)
    rows <- ceiling(panels / columns)
    png(file, width = 960 * columns, height = height * rows, res = 96)
    on.exit(dev.off())
    layout(matrix(c(seq_len(panels), rep(0, rows * columns - panels)), rows))
    par(cex = 1)
    for (subject in unique(subjects)) draw_panel(sessions[subjects == subject])
}

# The program -------------------------------------------------------------------------------------

usage <- paste("Rscript matches.R [--target HZ] [--targets FILE] [--requests FILE]",
               "[--picture FILE] [--decimal-comma] [--digits COUNT] PATH...")
examples <- "examples:
  Rscript matches.R --target 440 FOLDER
  Rscript matches.R --targets targets.tsv --picture trend.png FOLDER
  Rscript matches.R --target 440 --requests requests.csv --decimal-comma FOLDER
"

# Returns the options by name; stops where they are wrong.
parse_arguments <- function(arguments) {
    options <- list(target = NA, targets = NA, requests = NA, picture = NA, digits = "2",
                    decimal_comma = FALSE, help = FALSE, paths = character(0))
    while (length(arguments) > 0) {
        name <- gsub("-", "_", sub("^--([^=]*).*", "\\1", arguments[1]), fixed = TRUE)
        if (arguments[1] == "--") {
            options$paths <- c(options$paths, arguments[-1])
            break
        }
        if (!startsWith(arguments[1], "--")) {
            options$paths <- c(options$paths, arguments[1])
        } else if (name %in% c("decimal_comma", "help")) {
            options[[name]] <- TRUE
        } else if (name %in% setdiff(names(options), "paths")) {
            if (grepl("=", arguments[1], fixed = TRUE))
                arguments <- c("", sub("^[^=]*=", "", arguments[1]), arguments[-1])
            else if (length(arguments) < 2 || startsWith(arguments[2], "--"))
                stop("--", name, " takes a value")
            options[[name]] <- arguments[2]
            arguments <- arguments[-1]
        } else {
            stop("there is no option ", arguments[1])
        }
        arguments <- arguments[-1]
    }
    if (!options$help) check(options) else options
}

# Returns the options with numbers as such; stops where they are wrong.
check <- function(options) {
    if (is.na(options$target) && is.na(options$targets)) stop("--target or --targets is missing")
    hertz <- suppressWarnings(as.numeric(options$target))
    if (!is.na(options$target) && (is.na(hertz) || hertz <= 0 || is.infinite(hertz)))
        stop("--target takes a frequency above 0")
    options$target <- hertz
    if (!grepl("^([0-9]|1[0-5])$", options$digits)) stop("--digits takes a count from 0 to 15")
    options$digits <- as.integer(options$digits)
    if (length(options$paths) == 0) stop("a results file or a folder of them is missing")
    refuse_outputs(options)
    options$targets <- if (is.na(options$targets)) numeric(0)
    else tryCatch(read_targets(options$targets), error = function(problem) {
        stop(options$targets, ": ", conditionMessage(problem))
    })
    options
}

# Returns the paths of files without links; files that do not exist yet are in existing folders.
resolved <- function(files) {
    ifelse(file.exists(files), normalizePath(files, mustWork = FALSE),
           file.path(normalizePath(dirname(files), mustWork = FALSE), basename(files)))
}

# Returns whether a file begins as a results file does, whatever its name.
begins_with_header <- function(path) {
    # A pipe, whose reading would wait, has no size.
    if (!isTRUE(file.size(path) > 0)) return(FALSE)
    cannot_be_read <- function(condition) FALSE
    tryCatch(identical(readBin(path, "raw", nchar(header)), charToRaw(header)),
             warning = cannot_be_read, error = cannot_be_read)
}

# Stops where writing would replace responses, an input or another output.
refuse_outputs <- function(options) {
    given <- function(files) as.character(files[!is.na(files)])
    taken <- resolved(c(results_files(options$paths), given(options$targets)))
    for (output in given(c(options$requests, options$picture))) {
        # Files that the shell has listed may follow an option whose value was forgotten.
        if (grepl(name_pattern, basename(output)))
            stop(output, " has the name of a results file and is not written")
        if (begins_with_header(output))
            stop(output, " begins as a results file does and is not written")
        if (resolved(output) %in% taken)
            stop(output, " is an input or another output and is not written")
        taken <- c(taken, resolved(output))
    }
}

# Writes what the options name; returns whether all of it could be written.
write_files <- function(analysis, options) {
    name <- NA
    write <- function() {
        name <<- options$requests
        if (!is.na(name)) {
            file <- file(name, "wb")
            on.exit(close(file))
            write_mark(options, file)
            write_table(analysis$requests, options, file)
        }
        name <<- options$picture
        if (!is.na(name) && nrow(analysis$requests) == 0) {
            report(name, " is not drawn: there is no request")
            return(FALSE)
        }
        if (!is.na(name)) draw(analysis$files, name)
        TRUE
    }
    cannot_be_written <- function(condition) {
        report(name, " cannot be written")
        FALSE
    }
    tryCatch(write(), error = cannot_be_written, warning = cannot_be_written)
}

# Returns the exit status.
main <- function(arguments) {
    # Names may contain any characters; without a locale R would know only those of ASCII.
    if (!l10n_info()[["UTF-8"]]) suppressWarnings(Sys.setlocale("LC_CTYPE", "C.UTF-8"))
    options <- tryCatch(parse_arguments(enc2utf8(arguments)), error = function(problem) {
        report(conditionMessage(problem))
        report("usage: ", usage)
        NULL
    })
    if (is.null(options)) return(2)
    if (options$help) {
        cat("usage: ", usage, "\nREADME.md explains the options.\n\n", examples, sep = "")
        return(0)
    }
    analysis <- analyse(options$paths, options$target, options$targets)
    write_mark(options, stdout())
    write_table(analysis$sessions, options, stdout())
    cat("\n")
    write_table(analysis$matches, options, stdout())
    is_written <- write_files(analysis, options)
    if (nrow(analysis$sessions) == 0) report("there are no results files")
    if (nrow(analysis$sessions) > 0 && analysis$is_complete && is_written) 0 else 1
}

if (sys.nframe() == 0L && !interactive()) quit(status = main(commandArgs(trailingOnly = TRUE)))
