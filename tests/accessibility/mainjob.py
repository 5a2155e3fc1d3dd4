#!/usr/bin/python3
"""The main job through the accessibility bus alone: search, read the grid, tick, choose, prepare, read the outcome; then
the queue in the database is held against what was ticked.

mainjob.py ZULHOST DATABASE
"""
import sqlite3
import subprocess
import sys

from screen_reader import Atspi, Events, act, application, find, is_in, press, showing, texts_of, until

HOST, DATABASE = sys.argv[1:3]
TITLE = "Zul_MessageBuilder"


def check(condition, text):
    if not condition:
        raise AssertionError(text)


def search(form):
    """The search without criteria; the grid is a table of all customers."""
    grid = find(form, "table", "Clienti trovati")
    check(grid.get_n_rows() == 0, "rows before the search")
    press(form, "push button", "Ricerca")
    until("customers", lambda: grid.get_n_rows() > 0)
    headers = [grid.get_column_description(c) for c in range(grid.get_n_columns())]
    check(headers[:5] == ["Selezione", "RagioneSociale1", "Paese", "Provincia", "Telefono"], headers)
    return grid


def sort(grid):
    """By the customers' names, from the header."""
    header = grid.get_child_at_index(1)
    check(header.get_role_name() == "table column header", header.get_role_name())
    act(header, "Press")
    until("sorted", lambda: header.get_description().startswith("Ordinata in modo crescente"))
    names = [grid.get_accessible_at(row, 1).get_name() for row in range(3)]
    check(names == sorted(names, key=str.lower), names)


def tick(grid, events, rows):
    for row in rows:
        box = grid.get_accessible_at(row, 0)
        check(not is_in(box, Atspi.StateType.CHECKED), "ticked already")
        events.heard.clear()
        act(box, "Toggle")
        until("the tick", lambda: is_in(box, Atspi.StateType.CHECKED))
        check(box.get_name() == "Sì", box.get_name())
        events.wait("object:state-changed:checked", "Sì", 1)
    return [grid.get_accessible_at(row, 1).get_name() for row in rows]


def highlight(grid):
    """Rows are highlighted and told so; the cursor's cell is told as the focus."""
    check(grid.add_row_selection(4) and grid.is_row_selected(4), "not highlighted")
    check(is_in(grid.get_accessible_at(4, 1), Atspi.StateType.SELECTED), "its cells are not")
    events = Events("object:state-changed:focused")
    cell = grid.get_accessible_at(5, 1)
    act(cell, "SetFocus")
    events.wait("object:state-changed:focused", cell.get_name(), 1)
    check(is_in(cell, Atspi.StateType.FOCUSED), "no focus")
    check([r for r in range(10) if grid.is_row_selected(r)] == [5], "the cursor highlights its row alone")


def choose_template(program, form):
    press(form, "push button", "Scegli…: Messaggio SMS")
    lookup = other_window(program, form)
    rows = find(lookup, "table")
    until("templates", lambda: rows.get_n_rows() > 0)
    text = rows.get_accessible_at(0, 0).get_name()
    rows.add_row_selection(0)
    press(lookup, "push button", "OK")
    until("the template", lambda: find(form, "text", "Messaggio SMS").get_text(0, -1) == text)


def other_window(program, form, title=None):
    def found():
        for i in range(program.get_child_count()):
            child = program.get_child_at_index(i)
            if child is not None and child != form and showing(child) and title in (None, child.get_name()):
                return child
        return None

    return until(f"window {title!r}", found)


def prepare(program, form):
    tabs = {tab.get_name(): tab for tab in tabs_of(form)}
    check(not showing(tabs["Prepara per invio"]), "the last page shows before its step")
    press(form, "push button", "Prosegui")
    until("the second page", lambda: is_in(tabs["Tipo di invio"], Atspi.StateType.SELECTED))
    choice = find(form, "radio button", "Invia solo SMS")
    act(choice, "Toggle")
    until("the choice", lambda: is_in(choice, Atspi.StateType.CHECKED))
    choose_template(program, form)
    press(form, "push button", "Prosegui")
    until("the last page", lambda: showing(tabs["Prepara per invio"]))
    press(form, "push button", "Crea messaggi")
    box = other_window(program, form, "Manager messaggi")
    # The choice of a template sets a push choice too, and that one chooses the closing message.
    check(any("Creazione delle notifiche push ultimata." in text for text in texts_of(box)), texts_of(box))
    press(box, "push button", "OK")
    outcome = find(form, "list", "Esito della preparazione")
    until("the outcome", lambda: outcome.get_child_count() > 1)
    return [outcome.get_child_at_index(i).get_name() for i in range(outcome.get_child_count())]


def tabs_of(form):
    bar = find(form, "page tab list", "Fasi dell'invio")
    return [bar.get_child_at_index(i) for i in range(bar.get_child_count())]


def queue():
    with sqlite3.connect(DATABASE) as database:
        return database.execute(
            "select count(*) from TMK_MailingList where idTipoMessaggio = 6"
        ).fetchone()[0]


def main_job():
    program = application("zulhost")
    form = find(program, "dialog", TITLE)
    grid = search(form)
    sort(grid)
    highlight(grid)
    events = Events("object:state-changed:checked")
    names = tick(grid, events, [0, 2, 3, 7])
    lines = prepare(program, form)
    prepared = [line for line in lines if line.startswith("OK     - Preparato SMS per ")]
    skipped = [line for line in lines if line.startswith("ERRORE - Saltata richiesta invio SMS per ")]
    check(len(prepared) + len(skipped) == len(names), lines)
    check(len(prepared) > 0, lines)
    for name in names:
        check(any(f" per {name}" in line for line in prepared + skipped), f"{name}: {lines}")
    check(queue() == len(prepared), f"{queue()} in the queue, {len(prepared)} told")


host = subprocess.Popen([HOST, "--database", DATABASE, "--show", "sms,mail", "--window", "main"])
try:
    main_job()
    print("the main job was done by assistive tools alone")
finally:
    host.terminate()
    host.wait(30)
